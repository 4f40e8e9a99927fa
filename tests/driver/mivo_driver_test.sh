#!/usr/bin/env bash
# The driver as a newcomer meets it: help names every verb the driver takes, a wrong verb or
# preset is named back with what would be right. None of these runs the set-up.
set -uo pipefail
mivo=$1
root=$(dirname "$mivo")
fail() { echo "FAIL: $*"; exit 1; }

out=$("$mivo" help) || fail "./mivo help exited $?"
# every verb of the driver's case statement has its line in help
verbs=$(sed -n '/^case /,/^esac/p' "$mivo" | grep -oE '^  [a-z][a-z |-]*\)' | tr -d ' )' | tr '|' '\n' | grep -v '^-')
[ -n "$verbs" ] || fail "no verbs found in $mivo"
for verb in $verbs; do
  grep -qE "^  $verb +[a-z]" <<<"$out" || fail "help has no line for '$verb'"
done

out=$("$mivo" frobnicate 2>&1); rc=$?
[ $rc = 2 ] || fail "an unknown verb exited $rc"
grep -q "unknown verb 'frobnicate'" <<<"$out" || fail "an unknown verb is not named: $out"

# the presets it lists are the configure presets of CMakePresets.json that people can pick
wanted=$(grep -oE '"name": "[a-z-]+", "inherits"' "$root/CMakePresets.json" | cut -d'"' -f4 | sort | tr '\n' ' ')
out=$("$mivo" build no-such-preset 2>&1); rc=$?
[ $rc = 2 ] || fail "a wrong preset exited $rc"
listed=$(sed -n "s/.*the presets are: //p" <<<"$out" | tr ' ' '\n' | grep . | sort | tr '\n' ' ')
[ "$listed" = "$wanted" ] || fail "a wrong preset lists '$listed', the presets are '$wanted'"
echo "driver: help, unknown verb and wrong preset as expected ($(wc -w <<<"$verbs") verbs)"
