#!/usr/bin/env bash
# Time from starting a program under Wine until the stand-in client records its start:
# MivoStart.exe (no arguments, no update pending) against plain_start.exe, which only calls
# CreateProcessW on the same client. Same prefix, same installation, alternating runs.
# Usage: bench/launch_bench.sh [RUNS]   (after ./mivo build windows)
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
runs=${1:-15}
bin=$here/build/windows
work=${TMPDIR:-/tmp}/mivo-launch-bench
export MIVO_START_EXE=$bin/bin/MivoStart.exe MIVO_E2E_BIN=$bin/e2e-bin MIVO_E2E_WORK=$work
# one case to get an installation and a prefix with the shell running
MIVO_E2E_SETUP="cp '$here/resources/lang/en_US/gdstrings.ini' gdstrings.ini; cp '$bin/e2e-bin/plain_start.exe' ." \
  "$here/tests/e2e/run_case.sh" bench >/dev/null
install=$work/bench/install
export WINEPREFIX=$work/bench/prefix WINEDEBUG=-all
wine=wine; [ -x /usr/lib/wine/wine64 ] && wine=/usr/lib/wine/wine64
record=$work/bench/bench-record.txt
p=$(realpath -m "$record"); export MIVO_E2E_RECORD="Z:${p//\//\\}"
stop=$work/bench/bench.stop; rm -f "$stop"; sp=$(realpath -m "$stop")
"$wine" "$bin/e2e-bin/fake_shell.exe" "Z:${sp//\//\\}" </dev/null >/dev/null 2>&1 &
shell=$!
: >"$record"
until grep -q '^shell-ready' "$record"; do sleep 0.05; done
wineserver -p60 >/dev/null 2>&1 || true

one() {  # prints milliseconds from start until a new client line appears
  local before after start pid
  before=$(grep -c '^client' "$record" || true)
  start=$(date +%s%N)
  (cd "$install" && exec "$wine" "$install/$1" </dev/null >/dev/null 2>&1) &
  pid=$!
  until [ "$(grep -c '^client' "$record" || true)" -gt "$before" ]; do sleep 0.005; done
  after=$(date +%s%N)
  echo $(((after - start) / 1000000))
  wait "$pid" || true
  sleep 0.2  # let the client end before the next run
}
median() { sort -n | awk '{a[NR]=$1} END {print (NR % 2) ? a[(NR+1)/2] : (a[NR/2] + a[NR/2+1]) / 2}'; }
one plain_start.exe >/dev/null; one MivoStart.exe >/dev/null  # warm-up
launcher=(); plain=()
for _ in $(seq "$runs"); do
  launcher+=("$(one MivoStart.exe)")
  plain+=("$(one plain_start.exe)")
done
: >"$stop"; wait "$shell" 2>/dev/null || true
ml=$(printf '%s\n' "${launcher[@]}" | median); mp=$(printf '%s\n' "${plain[@]}" | median)
echo "runs: $runs each, alternating"
echo "MivoStart.exe  median ${ml} ms  (${launcher[*]})"
echo "plain_start    median ${mp} ms  (${plain[*]})"
awk -v a="$ml" -v b="$mp" 'BEGIN { printf "ratio MivoStart/plain = %.2f\n", a / b }'
