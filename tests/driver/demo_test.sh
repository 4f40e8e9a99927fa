#!/usr/bin/env bash
# The demo as the README has a newcomer run it, on this build: four runs told in words, then a
# picture of run 3's login-user window.
# Usage: demo_test.sh SOURCE_DIR WINDOWS_BUILD_DIR WORK_DIR
set -uo pipefail
root=$1 build=$2 work=$3
fail() { echo "FAIL: $*"; exit 1; }
out=$(MIVO_DEMO_BUILD=$build MIVO_DEMO_WORK=$work "$root/scripts/demo.sh" 2>&1)
rc=$?
echo "$out"
[ $rc = 0 ] || fail "the demo exited $rc"
for run in 1 2 3 4; do grep -q "^== Run $run: " <<<"$out" || fail "no run $run"; done
[ "$(grep -c '^  bob@qq.com received:  /open chat$' <<<"$out")" = 2 ] || fail "bob did not get the request in runs 3 and 4"
grep -q "^  The picture: $work/login_user_window.png$" <<<"$out" || fail "the picture's path is not printed"
size=$(identify -format '%m %wx%h' "$work/login_user_window.png" 2>&1) || fail "the picture is no image: $size"
[[ $size =~ ^PNG\ 3[0-9][0-9]x3[0-9][0-9]$ ]] || fail "the picture is $size, not the window's PNG"
