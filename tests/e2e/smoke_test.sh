#!/usr/bin/env bash
# The harness with the fake client in the launcher's place (MIVO_START_EXE): the client must
# have been started once with the arguments given, and the shell must have come up before it.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
output=$("$here/run_case.sh" harness-smoke /sf "5C1D7E20-94AB-4f63-8E2D-17B0C3A9F456" /up 'C:\Mivo Files\x' /name 测试)
printf '%s\n' "$output"

expected='/sf 5C1D7E20-94AB-4f63-8E2D-17B0C3A9F456 /up "C:\Mivo Files\x" /name 测试'
fail() { echo "FAIL: $*" >&2; exit 1; }
record=$(printf '%s\n' "$output" | awk '/^== record /{on=1; next} /^== /{on=0} on')
[ -n "$record" ] || fail "no record lines"
clients=$(printf '%s\n' "$record" | awk -F'\t' '$1 == "client"')
[ "$(printf '%s\n' "$clients" | grep -c .)" = 1 ] || fail "expected one client line"
printf '%s\n' "$clients" | awk -F'\t' 'NF == 4 && $2 ~ /^[0-9]+$/ && $3 ~ /^[0-9]+$/ { ok = 1 } END { exit !ok }' ||
  fail "client line is not role, ms, pid, command line"
command_line=$(printf '%s\n' "$clients" | cut -f4-)
[[ $command_line == *'\install\MivoStart.exe'*"$expected" ]] || fail "command line: $command_line"
printf '%s\n' "$output" | grep -qx '== launcher-exit 0' || fail "the fake client did not exit 0"
shell_at=$(printf '%s\n' "$record" | awk -F'\t' '$1 == "shell-ready" { print $2 }')
client_at=$(printf '%s\n' "$clients" | cut -f2)
[ -n "$shell_at" ] && [ "$shell_at" -le "$client_at" ] || fail "no shell-ready line before the client"
echo "PASS"
