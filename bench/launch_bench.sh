#!/usr/bin/env bash
# Launch and forward latency under Wine, each against the least a program could do:
#   launch:  MivoStart.exe without arguments (no update pending) until the stand-in client
#            records its start, against plain_start.exe, which only calls CreateProcessW on it;
#   forward: MivoStart.exe with arguments while one client runs, until that client has
#            received the command line, against plain_forward.exe, which finds the client's
#            window and sends it the same WM_COPYDATA.
# One installation (strings, skins, language setting) and one prefix with the shell running;
# runs alternate between the two sides; medians. Prints a summary and one ROW line per goal.
# Usage: bench/launch_bench.sh [RUNS]   (after ./mivo build windows)
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
runs=${1:-15}
bin=$here/build/windows
work=$bin/bench-work/launch
export MIVO_START_EXE=$bin/bin/MivoStart.exe MIVO_E2E_BIN=$bin/e2e-bin MIVO_E2E_WORK=$work
# one case to get an installation and a prefix
MIVO_E2E_SETUP="cp '$here/resources/lang/en_US/gdstrings.ini' gdstrings.ini; cp -r '$here/resources/skins' skins;
  cp '$bin/e2e-bin/plain_start.exe' '$bin/e2e-bin/plain_forward.exe' ." \
  "$here/tests/e2e/run_case.sh" bench >/dev/null
install=$work/bench/install
export WINEPREFIX=$work/bench/prefix WINEDEBUG=-all
wine=wine; [ -x /usr/lib/wine/wine64 ] && wine=/usr/lib/wine/wine64
winpath() { local p; p=$(realpath -m "$1"); printf 'Z:%s' "${p//\//\\}"; }
record=$work/bench/bench-record.txt
MIVO_E2E_RECORD=$(winpath "$record"); export MIVO_E2E_RECORD
stop=$work/bench/bench.stop; rm -f "$stop"
: >"$record"
"$wine" "$bin/e2e-bin/fake_shell.exe" "$(winpath "$stop")" </dev/null >/dev/null 2>&1 &
until grep -q '^shell-ready' "$record"; do sleep 0.05; done
wineserver -p60 >/dev/null 2>&1 || true
cleanup() { : >"$stop"; wait 2>/dev/null || true; }
trap cleanup EXIT

# one PROGRAM PATTERN [ARGS...]: milliseconds from start until a new record line matches PATTERN
one() {
  local program=$1 pattern=$2 before start after pid
  shift 2
  before=$(grep -c "$pattern" "$record" || true)
  start=$(date +%s%N)
  (cd "$install" && exec "$wine" "$install/$program" "$@" </dev/null >/dev/null 2>&1) &
  pid=$!
  until [ "$(grep -c "$pattern" "$record" || true)" -gt "$before" ]; do sleep 0.002; done
  after=$(date +%s%N)
  echo $(((after - start) / 1000000))
  wait "$pid" || true
  sleep 0.2  # let what it started settle before the next run
}
median() { sort -n | awk '{a[NR]=$1} END {print (NR % 2) ? a[(NR+1)/2] : (a[NR/2] + a[NR/2+1]) / 2}'; }
# measure NAME PATTERN [ARGS...]: alternating runs of MivoStart.exe and plain_NAME.exe
measure() {
  local name=$1 pattern=$2 ours=() peer=()
  shift 2
  one "plain_$name.exe" "$pattern" "$@" >/dev/null; one MivoStart.exe "$pattern" "$@" >/dev/null  # warm-up
  for _ in $(seq "$runs"); do
    ours+=("$(one MivoStart.exe "$pattern" "$@")")
    peer+=("$(one "plain_$name.exe" "$pattern" "$@")")
  done
  m_ours=$(printf '%s\n' "${ours[@]}" | median); m_peer=$(printf '%s\n' "${peer[@]}" | median)
  echo "$name: MivoStart.exe median ${m_ours} ms (${ours[*]}); plain_$name.exe median ${m_peer} ms (${peer[*]})"
}
# profile PATTERN [ARGS...]: one more run of MivoStart.exe with its phase profile on; prints it
profile() {
  local pattern=$1
  shift
  MIVO_START_PROFILE=1 one MivoStart.exe "$pattern" "$@" >/dev/null
  grep -h 'start-up phases' "$install"/logs/trace_log_*.txt | tail -1 | sed 's/^\[[^]]*\]/  profile: /'
}
row() {  # row METRIC PEER-TEXT
  awk -v m="$1" -v p="$2" -v o="$m_ours" -v q="$m_peer" 'BEGIN {
    r = o / q; printf "ROW|%s|%s ms|%s: %s ms|%.2fx|<= 1.3x|%s\n", m, o, p, q, r, (r <= 1.3 ? "yes" : "no") }'
}

measure start '^client'
profile '^client'
launch_row=$(row "start -> client created (Wine)" "CreateProcessW only")

# the client that receives the forwards, signed in before the runs start
"$wine" "$bin/e2e-bin/running_client.exe" "$(winpath "$stop")" alice@gmail.com </dev/null >/dev/null 2>&1 &
until grep -q '^client-ready:alice@gmail.com' "$record"; do sleep 0.05; done
measure forward '^forward:alice@gmail.com' /open "chat room" /uid 42
profile '^forward:alice@gmail.com' /open "chat room" /uid 42
forward_row=$(row "start with arguments -> the running client has them (Wine)" "FindWindow + WM_COPYDATA")
echo "runs: $runs each, alternating"
echo "$launch_row"
echo "$forward_row"
