#!/usr/bin/env bash
# Runs MivoStart.exe under Wine on a sample installation: once with a plug-in update pending,
# once after it is done, then twice with two clients already running (the first time the
# login-user window asks which one is meant, the second time the remembered choice answers),
# and tells what happened each time. Then it shows run 3's login-user window once more on an
# X display of its own (Xvfb) and saves a picture of it, login_user_window.png, beside the runs.
#
# Environment: MIVO_DEMO_BUILD the Windows build folder (default build/windows),
# MIVO_DEMO_WORK where the runs and the picture go (default $TMPDIR/mivo-demo, else /tmp/mivo-demo).
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
bin=${MIVO_DEMO_BUILD:-$here/build/windows}
export MIVO_START_EXE=$bin/bin/MivoStart.exe MIVO_E2E_BIN=$bin/e2e-bin
export MIVO_E2E_WORK=${MIVO_DEMO_WORK:-${TMPDIR:-/tmp}/mivo-demo}
export MIVO_E2E_UPDATE_MS=1500

# The sample installation: the launcher's English strings and language setting, a chat
# plug-in, and an update staged for it in install\staged\ (the folder /up names).
layout='cp "'$here'/resources/lang/en_US/gdstrings.ini" gdstrings.ini
cp -r "'$here'/resources/skins" skins
printf "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\r\n<LangSetting lang=\"en_US\">\r\n<SelectedLang />\r\n</LangSetting>\r\n" > lang.xml
mkdir -p plugin/chat/lang/en_US staged/plugin/chat/UpdateTemp
printf "<Plugin-Config><Update url=\"http://example.invalid/chat\"/><Info name=\"Chat\" detail=\"chat.dll\" id=\"42\"/></Plugin-Config>" > plugin/chat/lang/en_US/PluginConfig.xml
printf "<Mivo><VersionDetail detail=\"Chat 2.0: faster message history\"/><Module name=\"chat.dll\" version=\"2.0\" group=\"common\" oldversion=\"1.0\" currentversion=\"%s\"/></Mivo>" "$CURRENT" > staged/plugin/chat/UpdateTemp/StaticUpdateVersion.xml
[ "$PENDING" = 1 ] && : > staged/plugin/chat/UpdateTemp/UpdateFlag || true'

tell() {  # prints in plain words what one run's output says
  awk -F'\t' '
    /^== launcher-exit/ { printf "  MivoStart.exe ended with exit code %s.\n", $0 ~ /0$/ ? 0 : substr($0, 18) }
    /^== record/ { rec = 1; next }
    /^== trace/ { rec = 0; print "  The trace log says:"; next }
    /^== wine/ { rec = 0; skip = 1; next }
    rec && $1 == "update" { printf "  The update executor started:  %s\n", $4 }
    rec && $1 == "update-end" { print "  The update executor finished." }
    rec && $1 == "client" { printf "  The client started:           %s\n", $4 }
    rec && $1 == "user-form-shown" { printf "  The login-user window opened: %s\n", $4 }
    rec && $1 == "user-clicked" { printf "  The person clicked:           %s\n", $4 }
    rec && $1 ~ /^forward:/ { printf "  %s received:  %s\n", substr($1, 9), $4 }
    !rec && !skip && /^\[/ { printf "    %s\n", $0 }
  '
}

staged() { local p; p=$(realpath -m "$MIVO_E2E_WORK/$1/install/staged"); printf 'Z:%s\\' "${p//\//\\}"; }

echo "== Run 1: the chat plug-in has an update pending (marker present, chat.dll still at 1.0)"
PENDING=1 CURRENT=1.0 MIVO_E2E_SETUP="$layout" "$here/tests/e2e/run_case.sh" run1 /up "$(staged run1)" | tell
echo
echo "== Run 2: the update is done (no marker, chat.dll at 2.0)"
PENDING=0 CURRENT=2.0 MIVO_E2E_SETUP="$layout" "$here/tests/e2e/run_case.sh" run2 /up "$(staged run2)" | tell
echo
echo
echo "== Run 3: alice@gmail.com and bob@qq.com are running; the person picks Bob and ticks \"remember\""
PENDING=0 CURRENT=2.0 MIVO_E2E_CLIENTS="alice@gmail.com bob@qq.com" MIVO_E2E_USER="row:1 remember ok" \
  MIVO_E2E_SETUP="$layout" "$here/tests/e2e/run_case.sh" run3 /open chat | tell
echo "  start.txt now holds: $(cat "$MIVO_E2E_WORK/run3/install/start.txt")"
echo
echo "== Run 4: the same two clients; the remembered choice answers without asking"
stored=$(cat "$MIVO_E2E_WORK/run3/install/start.txt")
PENDING=0 CURRENT=2.0 MIVO_E2E_CLIENTS="alice@gmail.com bob@qq.com" \
  MIVO_E2E_SETUP="$layout; printf '%s' '$stored' > start.txt" "$here/tests/e2e/run_case.sh" run4 /open chat | tell
echo
echo "== The login-user window of run 3, on a virtual X display"
picture=$MIVO_E2E_WORK/login_user_window.png
rm -f "$picture"
display=99
while [ -e /tmp/.X$display-lock ]; do display=$((display + 1)); done
Xvfb :$display -screen 0 800x600x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
export DISPLAY=:$display
trap 'kill $xvfb 2>/dev/null || true' EXIT
for _ in $(seq 50); do [ -e /tmp/.X11-unix/X$display ] && break; sleep 0.1; done
# As run 3, with Wine drawing on the display; the person picks Bob and ticks "remember", and the
# window stays open for the picture.
MIVO_E2E_CLIENTS="alice@gmail.com bob@qq.com" MIVO_E2E_USER="row:1 remember" \
  MIVO_E2E_SETUP="$layout; wine reg add 'HKCU\\Software\\Wine\\Drivers' /v Graphics /d x11 /f >/dev/null 2>&1" \
  PENDING=0 CURRENT=2.0 "$here/tests/e2e/run_case.sh" window /open chat >"$MIVO_E2E_WORK/window.out" 2>&1 &
run=$!
record=$MIVO_E2E_WORK/window/record.txt
for _ in $(seq 600); do
  grep -q '^user-clicked	[0-9]*	[0-9]*	remember' "$record" 2>/dev/null && break
  kill -0 $run 2>/dev/null || break
  sleep 0.1
done
sleep 1  # the window repaints after the clicks
window=$(xwininfo -root -tree 2>/dev/null | awk '/"Choose a user": \("mivostart.exe"/ { print $1; exit }')
[ -n "$window" ] && import -window "$window" "$picture" 2>/dev/null || true
WINEPREFIX=$MIVO_E2E_WORK/window/prefix wineserver -k >/dev/null 2>&1 || true
wait $run 2>/dev/null || true
if [ ! -s "$picture" ]; then
  echo "  The window could not be pictured; what happened is in $MIVO_E2E_WORK/window.out" >&2
  exit 1
fi
echo "  The picture: $picture"
echo
echo "Installations, records and trace logs stay in $MIVO_E2E_WORK (run1 ... run4, window) for a closer look."
