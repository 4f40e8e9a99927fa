#!/usr/bin/env bash
# End-to-end cases of the launcher under Wine, each in its own installation and prefix
# (run_case.sh), asserting on what the stand-in client, update executor and shell recorded.
# Usage: launcher_cases.sh [CASE...]   (all cases when none is named)
source "$(dirname "$0")/cases_lib.sh"

# A pending plug-in-free client update staged in <install>/staged/, named with /up.
stage_update='mkdir -p staged/UpdateTemp && : > staged/UpdateTemp/UpdateFlag && printf "%s" "<Mivo><Module name=\"MyMivo.exe\" version=\"2\" group=\"core\" oldversion=\"1\" currentversion=\"1\"/></Mivo>" > staged/UpdateTemp/StaticUpdateVersion.xml'

case_no_arguments() {
  MIVO_E2E_SETUP="$strings" run "$current"
  [ "$(count_of client)" = 1 ] || fail "expected one client start, got $(count_of client)"
  [ "$(lines_of client)" = "MyMivo.exe $token " ] || fail "client command line: [$(lines_of client)]"
  [ "$(count_of update)" = 0 ] || fail "the update executor ran"
  has_trace "CStartApp::InitInstance cmdLineString is "
  has_trace "CStartApp::InitInstance cmd string is empty"
  has_trace "listRecoverComponentData size is 0,listUpdateComponentData size is 0, bSilent is 0"
  has_trace "StartLoadMivo"
}

case_pending_update_runs_the_executor_first() {
  local staged
  staged="$(winpath "$work/$current/install/staged")\\"
  MIVO_E2E_UPDATE_MS=1500 MIVO_E2E_SETUP="$strings; $stage_update" run "$current" /up "$staged"
  [ "$(count_of update)" = 1 ] || fail "expected one update executor run, got $(count_of update)"
  local exec_line; exec_line=$(lines_of update)
  case "$exec_line" in
    *"UpdateExec.exe\" $token /up $staged /hky \"S-1-5-21-"*"\"") ;;
    *) fail "update executor command line: [$exec_line]" ;;
  esac
  [ "$(count_of update-event-seen)" = 1 ] || fail "the executor did not see the executed event"
  [ "$(lines_of client)" = "MyMivo.exe $token /up $staged" ] || fail "client command line: [$(lines_of client)]"
  local ended started
  ended=$(times_of update-end); started=$(times_of client)
  [ -n "$ended" ] && [ -n "$started" ] && [ "$started" -ge "$ended" ] || fail "client ($started) before the executor ended ($ended)"
  has_trace "listRecoverComponentData size is 1,listUpdateComponentData size is 0, bSilent is 0"
  has_trace "do StartLoadUpdateExecEx"
}

case_silent_start_skips_the_update() {
  local staged
  staged="$(winpath "$work/$current/install/staged")\\"
  MIVO_E2E_SETUP="$strings; $stage_update" run "$current" /up "$staged" /pluginapp chat /port 80 /uid 7 /key k
  [ "$(count_of update)" = 0 ] || fail "the update executor ran on a silent start"
  [ "$(lines_of client)" = "MyMivo.exe $token /up $staged /pluginapp chat /port 80 /uid 7 /key k" ] ||
    fail "client command line: [$(lines_of client)]"
  has_trace "bSilent is 1"
}

case_crashing_executor_still_starts_the_client() {
  local staged
  staged="$(winpath "$work/$current/install/staged")\\"
  MIVO_E2E_UPDATE_CRASH=1 MIVO_E2E_SETUP="$strings; $stage_update" run "$current" /up "$staged"
  [ "$(count_of update)" = 1 ] || fail "expected the executor to start"
  [ "$(count_of update-end)" = 0 ] || fail "the executor was meant to crash"
  [ "$(count_of client)" = 1 ] || fail "the client did not start after the crash"
}

case_nothing_starts_without_a_desktop_shell() {
  MIVO_E2E_NO_SHELL=1 MIVO_E2E_SETUP="$strings" run "$current"
  [ "$(count_of client)" = 0 ] || fail "the client started without a Progman window"
  has_trace "StartLoadMivo"
  has_trace "CreateProcessAsDesktopUser MyMivo.exe /sf"
  has_trace "not started: no desktop shell window"
}

case_missing_client_ends_quietly() {
  MIVO_E2E_SETUP="$strings; rm MyMivo.exe" run "$current"
  [ "$(count_of client)" = 0 ] || fail "a client was recorded"
  printf '%s\n' "$out" | grep -q '^== launcher-exit 0$' || fail "the launcher did not end normally"
  has_trace "StartLoadMivo"
  has_trace "not started: CreateProcessW failed (0x00000002)"
}

case_missing_executor_starts_nothing() {
  local staged
  staged="$(winpath "$work/$current/install/staged")\\"
  MIVO_E2E_SETUP="$strings; $stage_update; rm UpdateExec.exe" run "$current" /up "$staged"
  [ "$(count_of update)" = 0 ] || fail "an update executor ran"
  [ "$(count_of client)" = 0 ] || fail "the client started although the executor could not"
  printf '%s\n' "$out" | grep -q '^== launcher-exit 0$' || fail "the launcher did not end normally"
  has_trace "do StartLoadUpdateExecEx"
  has_trace "UpdateExec.exe not started: error"
}

# While the first launcher waits on a five-second update, twenty more start at once: all
# leave silently, so there is one executor run and one client start in all.
case_concurrent_launchers_leave_silently() {
  local staged dir="$work/$current"
  staged="$(winpath "$dir/install/staged")\\"
  # a record left by an earlier run must not start the extra launchers before this run is up
  rm -f "$dir/record.txt" "$dir"/extra.*
  (
    export WINEPREFIX="$dir/prefix" WINEDEBUG=-all MIVO_E2E_RECORD
    MIVO_E2E_RECORD=$(winpath "$dir/record.txt")
    wine=wine; [ -x /usr/lib/wine/wine64 ] && wine=/usr/lib/wine/wine64
    for _ in $(seq 600); do grep -q '^update	' "$dir/record.txt" 2>/dev/null && break; sleep 0.05; done
    pids=()
    for i in $(seq 20); do
      (cd "$dir/install" && timeout 60 "$wine" "$dir/install/MivoStart.exe" </dev/null >/dev/null 2>&1; echo $? >"$dir/extra.$i") &
      pids+=($!)
    done
    wait "${pids[@]}"
  ) &
  local extra=$!
  MIVO_E2E_UPDATE_MS=5000 MIVO_E2E_SETUP="$strings; $stage_update" run "$current" /up "$staged"
  wait $extra
  [ "$(count_of update)" = 1 ] || fail "expected one executor run, got $(count_of update)"
  [ "$(count_of client)" = 1 ] || fail "expected one client start, got $(count_of client)"
  local i
  for i in $(seq 20); do [ "$(cat "$dir/extra.$i" 2>/dev/null)" = 0 ] || fail "extra launcher $i ended with $(cat "$dir/extra.$i" 2>/dev/null)"; done
  local starts; starts=$(printf '%s\n' "$out" | grep -c 'CStartApp::InitInstance cmdLineString')
  [ "$starts" = 1 ] || fail "the extra launchers traced ($starts start-up lines)"
}

# Links (Wine's directory symbolic links: Unix links in the prefix; Wine makes no junctions)
# in the shared folder, its virtual-store copy and "Temp", each pointing at a folder outside
# with a file in it. The walks empty the folders around the links; Wine cannot remove such a
# link, so the shared folder survives and the elevated "rd /s /q", which would follow the link
# and wipe its target, must not run.
case_links_in_emptied_folders_keep_their_targets() {
  local setup='for t in shared store temp; do mkdir -p "$CASE_DIR/outside/$t" && echo keep >"$CASE_DIR/outside/$t/precious.txt"; done
shared="$WINEPREFIX/drive_c/ProgramData/TarnellMIVO"; mkdir -p "$shared/sub" && echo stale >"$shared/stale.txt"
ln -s "$CASE_DIR/outside/shared" "$shared/sub/link"
appdata=$(ls -d "$WINEPREFIX"/drive_c/users/*/AppData/Local | grep -v /Public/ | head -1)
store="$appdata/VirtualStore/ProgramData/TarnellMIVO"; mkdir -p "$store" && echo stale >"$store/stale.txt"
ln -s "$(realpath --relative-to="$store" "$CASE_DIR/outside/store")" "$store/link"
mkdir -p Temp && echo stale >Temp/stale.txt && ln -s "$CASE_DIR/outside/temp" Temp/link'
  MIVO_E2E_SETUP="$strings; $setup" run "$current"
  local dir="$work/$current" t
  for t in shared store temp; do
    [ "$(cat "$dir/outside/$t/precious.txt" 2>&1)" = keep ] || fail "the file the $t link points at is gone"
  done
  [ ! -e "$dir/prefix/drive_c/ProgramData/TarnellMIVO/stale.txt" ] || fail "the shared folder was not emptied"
  [ ! -e "$dir/install/Temp/stale.txt" ] || fail "Temp was not emptied"
  ! ls "$dir"/prefix/drive_c/users/*/AppData/Local/VirtualStore/ProgramData/TarnellMIVO/stale.txt >/dev/null 2>&1 ||
    fail "the virtual-store copy was not emptied"
  [ "$(count_of client)" = 1 ] || fail "the client did not start"
  has_trace 'CPathTool::CleanSharedFolders 1 link(s) left in C:\ProgramData\TarnellMIVO\, not removed as administrator'
}

# A "lang.xml" nested 20,000 levels deep once overflowed the stack before anything was done:
# now it is refused like a damaged file, traced, and the start goes on.
case_a_deeply_nested_lang_xml_is_refused() {
  local deep='{ printf "<LangSetting lang=\"en_US\">"; for i in $(seq 20000); do printf "<a>"; done; } >lang.xml'
  MIVO_E2E_SETUP="$strings; $deep" run "$current"
  [ "$(count_of client)" = 1 ] || fail "the client did not start"
  has_trace 'lang.xml not loaded: nested too deeply'
}

run_cases "$@"
