#!/usr/bin/env bash
# Runs the launcher once under Wine, in a throw-away installation folder and Wine prefix, with
# helper programs standing in for the client, the update executor and the desktop shell, then
# prints what the helpers recorded and the launcher's trace log.
#
# Usage: run_case.sh CASE [launcher arguments...]
#
# Environment:
#   MIVO_START_EXE        the launcher, copied into the installation as MivoStart.exe
#   MIVO_E2E_BIN          folder holding MyMivo.exe, UpdateExec.exe and fake_shell.exe
#   MIVO_E2E_WORK         where cases live (default /tmp/mivo-e2e); <work>/<CASE>/ is wiped first
#   MIVO_E2E_NO_SHELL=1   no "Progman" window during the run
#   MIVO_E2E_CLIENTS      clients already running when the launcher starts: a space-separated
#                         list of account[:mode[:arg]], each one running_client.exe (also in
#                         MIVO_E2E_BIN; see running_client.cpp for the modes) started in list
#                         order, each signed in before the next starts, all until the end
#   MIVO_E2E_USER         steps for fake_user.exe (also in MIVO_E2E_BIN), the person at the
#                         login-user window: started with the launcher, it waits for the
#                         window and clicks through it ("row:1 remember ok", "cancel", ...)
#   MIVO_EXPLAIN_EXE      MivoExplain.exe (default: beside MIVO_START_EXE); when it exists it is
#                         installed too and run with --json and the same arguments just before
#                         the launcher, unless a client hangs (its request would hold that
#                         client for the launcher's run too)
#   MIVO_E2E_SETUP        shell command run in the installation folder before the launcher
#                         (string tables, start files, ...); CASE_DIR and WINEPREFIX are set
#   MIVO_E2E_TIMEOUT      seconds the launcher may run (default 60)
#   MIVO_E2E_IDLE_TIMEOUT seconds the prefix may take to go idle afterwards (default 60)
#   MIVO_E2E_UPDATE_MS, MIVO_E2E_UPDATE_CRASH, MIVO_E2E_CLIENT_MS reach the helpers unchanged.
#
# Standard output, in this order:
#   == explain <file>         then MivoExplain.exe's JSON document, when it ran
#   == explain-changed        then the entries it added, removed or changed, if any
#   == launcher-exit <code>
#   == record <file>          then the record lines: role TAB ms TAB pid TAB command line
#   == trace <file>           then the file, for each logs/trace_log_*.txt of the installation
#   == wine                   then whatever Wine printed, when it printed anything
# The case folder stays for a look afterwards: install/, prefix/, record.txt, wine.log.
#
# Exit status: 0 when the run finished (whatever the launcher returned), 2 for a usage or set-up
# error, 3 when the shell or a running client did not come up, 124 when the launcher or the
# prefix did not finish in time.
set -euo pipefail

if [ $# -lt 1 ] || ! [[ $1 =~ ^[A-Za-z0-9][A-Za-z0-9._-]*$ ]] || [ "$1" = template-prefix ]; then
  echo "usage: run_case.sh CASE [launcher arguments...]  (CASE: letters, digits, . _ -)" >&2
  exit 2
fi
case_name=$1; shift
if [ -z "${MIVO_START_EXE:-}" ] || [ -z "${MIVO_E2E_BIN:-}" ]; then
  echo "run_case.sh: MIVO_START_EXE must name the launcher and MIVO_E2E_BIN the helpers' folder" >&2
  exit 2
fi
clients=()
[ -z "${MIVO_E2E_CLIENTS:-}" ] || read -r -a clients <<<"$MIVO_E2E_CLIENTS"
for entry in "${clients[@]}"; do
  [[ $entry =~ ^[^:]+(:|$) ]] || { echo "run_case.sh: MIVO_E2E_CLIENTS entry without an account: $entry" >&2; exit 2; }
done
needed=("$MIVO_START_EXE" "$MIVO_E2E_BIN/MyMivo.exe" "$MIVO_E2E_BIN/UpdateExec.exe" "$MIVO_E2E_BIN/fake_shell.exe")
[ ${#clients[@]} = 0 ] || needed+=("$MIVO_E2E_BIN/running_client.exe")
for f in "${needed[@]}"; do
  [ -f "$f" ] || { echo "run_case.sh: missing $f" >&2; exit 2; }
done

work=$(realpath -m "${MIVO_E2E_WORK:-/tmp/mivo-e2e}")
template=$work/template-prefix
case_dir=$work/$case_name
prefix=$case_dir/prefix
install=$case_dir/install
record=$case_dir/record.txt
winelog=$case_dir/wine.log
stop_file=$case_dir/shell.stop

wine=wine
[ -x /usr/lib/wine/wine64 ] && wine=/usr/lib/wine/wine64
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
# Wine turns the arguments into a Windows command line with the Unix locale's code page.
[ -n "${LC_ALL:-}" ] || export LC_ALL=C.UTF-8

# Z: is the Unix root in every prefix; this saves starting Wine just to ask winepath.
windows_path() { local p; p=$(realpath -m "$1"); printf 'Z:%s' "${p//\//\\}"; }
now() { date +%s.%N; }
elapsed() { awk -v a="$1" -v b="$(now)" 'BEGIN { printf "%.2f", b - a }'; }

# One booted prefix, made once and copied for each case: booting takes far longer than a copy.
mkdir -p "$work"
(
  flock 9
  # rebuilt when Wine changes or the settings below do
  version="$("$wine" --version 2>/dev/null || echo unknown) settings-2"
  if [ "$(cat "$template/.mivo-ready" 2>/dev/null)" != "$version" ]; then
    started=$(now)
    rm -rf "$template"
    mkdir -p "$template"
    (
      export WINEPREFIX=$template
      "$wine" wineboot -i
      # the null graphics driver: windows and messages work without a display
      "$wine" reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f
      # a crash ends the process instead of waiting in winedbg; without a Debugger value Wine
      # still runs winedbg --auto, which then ends the process without its crash dialog
      "$wine" reg delete 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug' /v Debugger /f || true
      "$wine" reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f
      wineserver -w
    ) </dev/null >"$work/template-prefix.log" 2>&1
    echo "$version" >"$template/.mivo-ready"
    echo "run_case.sh: template prefix booted in $(elapsed "$started") s" >&2
  fi
  if [ -d "$prefix" ]; then WINEPREFIX=$prefix wineserver -k </dev/null >/dev/null 2>&1 || true; fi
  rm -rf "$case_dir"
  mkdir -p "$case_dir"
  started=$(now)
  # Wine's binaries, nearly all of the prefix's 700 MB, are only ever read: hard links to them
  # keep a case at a few MB. Everything else (registry, .ini files) is a real copy.
  cp -al "$template" "$prefix"
  (cd "$template" && find . -type f ! \( -iname '*.dll' -o -iname '*.exe' -o -iname '*.drv' -o -iname '*.sys' \
    -o -iname '*.ocx' -o -iname '*.cpl' -o -iname '*.acm' -o -iname '*.ds' -o -iname '*.tlb' -o -iname '*.nls' \) \
    -print0 | xargs -0 cp -p --parents --remove-destination -t "$prefix")
  echo "run_case.sh: prefix copied in $(elapsed "$started") s" >&2
) 9>"$work/template-prefix.lock"

export WINEPREFIX=$prefix
export MIVO_E2E_RECORD
MIVO_E2E_RECORD=$(windows_path "$record")
: >"$record"
: >"$winelog"
mkdir -p "$install"
cp "$MIVO_START_EXE" "$install/MivoStart.exe"
cp "$MIVO_E2E_BIN/MyMivo.exe" "$MIVO_E2E_BIN/UpdateExec.exe" "$install/"
explain_exe=${MIVO_EXPLAIN_EXE:-$(dirname "$MIVO_START_EXE")/MivoExplain.exe}
[ ! -f "$explain_exe" ] || cp "$explain_exe" "$install/MivoExplain.exe"
if [ -n "${MIVO_E2E_SETUP:-}" ]; then
  (cd "$install" && CASE_DIR=$case_dir bash -c "$MIVO_E2E_SETUP") || { echo "run_case.sh: MIVO_E2E_SETUP failed" >&2; exit 2; }
fi

shell_pid=
client_pids=()
finished=0
cleanup() {
  if [ "$finished" = 1 ]; then return; fi
  if [ -n "$shell_pid" ]; then kill "$shell_pid" 2>/dev/null || true; fi
  for pid in "${client_pids[@]}" ${user_pid:+"$user_pid"}; do kill "$pid" 2>/dev/null || true; done
  wineserver -k </dev/null >/dev/null 2>&1 || true
}
trap cleanup EXIT

# Every Wine process writes to the case's log, never to our standard output: a Wine service
# holding a caller's pipe would keep ctest waiting.
if [ "${MIVO_E2E_NO_SHELL:-}" != 1 ]; then
  "$wine" "$MIVO_E2E_BIN/fake_shell.exe" "$(windows_path "$stop_file")" </dev/null >>"$winelog" 2>&1 &
  shell_pid=$!
  deadline=$((SECONDS + 60))
  until grep -q '^shell-ready	' "$record"; do
    if ! kill -0 "$shell_pid" 2>/dev/null || [ $SECONDS -ge $deadline ]; then
      echo "run_case.sh: the fake shell did not come up" >&2
      cat "$winelog" >&2
      exit 3
    fi
    sleep 0.05
  done
fi

# The running clients, one at a time: each one's windows exist before the next one's, so the
# order the launcher finds them in does not vary from run to run.
ready_count() { awk -F'\t' -v r="client-ready:$1" '$1 == r { n++ } END { print n + 0 }' "$record"; }
for entry in "${clients[@]}"; do
  IFS=: read -r account mode arg <<<"$entry"
  args=("$account")
  [ -z "$mode" ] || args+=("$mode")
  [[ $entry != *:*:* ]] || args+=("$arg")
  before=$(ready_count "$account")
  "$wine" "$MIVO_E2E_BIN/running_client.exe" "$(windows_path "$stop_file")" "${args[@]}" </dev/null >>"$winelog" 2>&1 &
  client_pids+=($!)
  deadline=$((SECONDS + 60))
  until [ "$(ready_count "$account")" -gt "$before" ]; do
    if ! kill -0 "${client_pids[-1]}" 2>/dev/null || [ $SECONDS -ge $deadline ]; then
      echo "run_case.sh: the running client $entry did not come up" >&2
      cat "$winelog" >&2
      exit 3
    fi
    sleep 0.05
  done
done

# The explanation first, on the same installation and with the same clients: what it says must
# be what the launcher then does, and it must change no file. What the clients record while
# it asks them goes to explain-record.txt, so the record holds the launcher's run alone.
explain_json=$case_dir/explain.json
explain_changes=$case_dir/explain-changes.txt
listing() {
  local d
  for d in "$install" "$prefix/drive_c/ProgramData" "$prefix"/drive_c/users/*/AppData/Local/VirtualStore; do
    if [ -d "$d" ]; then find "$d" -printf '%p %s %T@\n'; fi
  done | sort
}
explained=0
if [ -f "$install/MivoExplain.exe" ] && [[ " ${clients[*]} " != *:hang* ]]; then
  listing >"$case_dir/before.txt"
  recorded=$(stat -c %s "$record")
  (cd "$install" && timeout -k 5 60 "$wine" "$install/MivoExplain.exe" --json "$@" </dev/null >"$explain_json" 2>>"$winelog") ||
    echo "run_case.sh: MivoExplain.exe failed" >&2
  tail -c +$((recorded + 1)) "$record" >"$case_dir/explain-record.txt"
  truncate -s "$recorded" "$record"
  listing >"$case_dir/after.txt"
  diff "$case_dir/before.txt" "$case_dir/after.txt" | grep '^[<>]' >"$explain_changes" || true
  explained=1
fi

user_pid=
if [ -n "${MIVO_E2E_USER:-}" ]; then
  read -r -a user_steps <<<"$MIVO_E2E_USER"
  "$wine" "$MIVO_E2E_BIN/fake_user.exe" "${user_steps[@]}" </dev/null >>"$winelog" 2>&1 &
  user_pid=$!
fi

status=0
launcher_exit=0
cd "$install"
timeout -k 5 "${MIVO_E2E_TIMEOUT:-60}" "$wine" "$install/MivoStart.exe" "$@" </dev/null >>"$winelog" 2>&1 || launcher_exit=$?
if [ "$launcher_exit" = 124 ] || [ "$launcher_exit" = 137 ]; then
  echo "run_case.sh: the launcher did not end within ${MIVO_E2E_TIMEOUT:-60} s" >&2
  status=124
fi

if [ -n "$user_pid" ]; then
  for _ in $(seq 100); do kill -0 "$user_pid" 2>/dev/null || break; sleep 0.1; done
  kill "$user_pid" 2>/dev/null || true
  wait "$user_pid" 2>/dev/null || true
  user_pid=
fi

helpers=(${shell_pid:+"$shell_pid"} "${client_pids[@]}")
if [ ${#helpers[@]} -gt 0 ]; then
  : >"$stop_file"
  for _ in $(seq 100); do
    alive=0
    for pid in "${helpers[@]}"; do if kill -0 "$pid" 2>/dev/null; then alive=1; fi; done
    [ $alive = 1 ] || break
    sleep 0.1
  done
  for pid in "${helpers[@]}"; do
    kill "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
  done
  shell_pid=
  client_pids=()
fi

if [ $status = 0 ] && ! timeout "${MIVO_E2E_IDLE_TIMEOUT:-60}" wineserver -w </dev/null >/dev/null 2>&1; then
  echo "run_case.sh: processes of the prefix still running after ${MIVO_E2E_IDLE_TIMEOUT:-60} s" >&2
  status=124
fi
[ $status = 0 ] || wineserver -k </dev/null >/dev/null 2>&1 || true
finished=1

print_file() {
  cat "$1"
  if [ -s "$1" ] && [ -n "$(tail -c1 "$1")" ]; then echo; fi
}
if [ "$explained" = 1 ]; then
  echo "== explain $explain_json"
  print_file "$explain_json"
  if [ -s "$explain_changes" ]; then
    echo "== explain-changed"
    print_file "$explain_changes"
  fi
fi
echo "== launcher-exit $launcher_exit"
echo "== record $record"
print_file "$record"
for trace in "$install"/logs/trace_log_*.txt; do
  [ -f "$trace" ] || continue
  echo "== trace $trace"
  print_file "$trace"
done
if [ -s "$winelog" ]; then
  echo "== wine"
  print_file "$winelog"
fi
exit $status
