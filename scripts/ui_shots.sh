#!/usr/bin/env bash
# Pictures of the login-user window for a person to look at: MivoStart.exe under Wine on an X
# display of its own (Xvfb), at 100% and 150% scaling, with 3 and with 12 running clients,
# after the keyboard moved the list's selection (the list has the focus and shows its mark).
# Writes login_user_<scale>_<clients>.png into the output folder.
#
# Usage: ui_shots.sh [BUILD [OUT]]   BUILD the Windows build folder (default build/windows),
#                                    OUT where the pictures go (default BUILD/ui-shots)
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
bin=$(realpath "${1:-$here/build/windows}")
out=$(realpath -m "${2:-$bin/ui-shots}")
mkdir -p "$out"
rm -rf "$out/work"  # a fresh booted prefix each time: a killed run can leave the last one broken
export MIVO_START_EXE=$bin/bin/MivoStart.exe MIVO_E2E_BIN=$bin/e2e-bin MIVO_E2E_WORK=$out/work

display=99
while [ -e /tmp/.X$display-lock ]; do display=$((display + 1)); done
Xvfb :$display -screen 0 1024x768x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
export DISPLAY=:$display
trap 'kill $xvfb 2>/dev/null || true' EXIT
for _ in $(seq 50); do [ -e /tmp/.X11-unix/X$display ] && break; sleep 0.1; done

accounts() {  # the first N of twelve accounts, in no particular order
  local all=(mia@qq.com alice@gmail.com bob@qq.com carol@163.com dan@126.com eve@gmail.com frank@qq.com
    grace@163.com heidi@126.com ivan@gmail.com judy@qq.com ken@163.com)
  echo "${all[@]:0:$1}"
}

shot() {  # shot DPI CLIENTS KEYS NAME
  local dpi=$1 clients=$2 keys=$3 name=$4 record picture window
  local setup="cp '$here/resources/lang/en_US/gdstrings.ini' gdstrings.ini; cp -r '$here/resources/skins' skins
wine reg add 'HKCU\\Software\\Wine\\Drivers' /v Graphics /d x11 /f >/dev/null 2>&1
wine reg add 'HKCU\\Control Panel\\Desktop' /v LogPixels /t REG_DWORD /d $dpi /f >/dev/null 2>&1
wine reg add 'HKLM\\System\\CurrentControlSet\\Hardware Profiles\\Current\\Software\\Fonts' /v LogPixels /t REG_DWORD /d $dpi /f >/dev/null 2>&1"
  picture=$out/$name.png
  rm -f "$picture"
  MIVO_E2E_CLIENTS="$(accounts "$clients")" MIVO_E2E_USER="$keys" MIVO_E2E_SETUP="$setup" \
    "$here/tests/e2e/run_case.sh" "$name" /open chat >"$out/$name.out" 2>&1 &
  local run=$! last=${keys##* }
  record=$MIVO_E2E_WORK/$name/record.txt
  for _ in $(seq 900); do
    grep -q "^user-pressed	[0-9]*	[0-9]*	$last" "$record" 2>/dev/null && break
    kill -0 $run 2>/dev/null || break
    sleep 0.1
  done
  sleep 1  # the window repaints after the keys
  window=$(xwininfo -root -tree 2>/dev/null | awk '/"Choose a user": \("mivostart.exe"/ { print $1; exit }')
  [ -n "$window" ] && import -window "$window" "$picture" 2>/dev/null || true
  WINEPREFIX=$MIVO_E2E_WORK/$name/prefix wineserver -k >/dev/null 2>&1 || true
  wait $run 2>/dev/null || true
  if [ -s "$picture" ]; then echo "$picture"; else echo "no picture for $name (see $out/$name.out)" >&2; fi
}

shot 96 3 "key:down" login_user_100_3
shot 96 12 "key:end" login_user_100_12
shot 144 3 "key:down" login_user_150_3
shot 144 12 "key:end key:up" login_user_150_12
