#!/usr/bin/env bash
# Pictures of the login-user window for a person to look at: MivoStart.exe under Wine on an X
# display of its own (Xvfb), in each language, at 100% and 150% scaling, with 3 and with 12
# running clients, after the keyboard moved the list's selection (the list has the focus and
# shows its mark). Writes login_user_<language>_<scale>_<clients>.png into the output folder.
#
# Usage: ui_shots.sh [BUILD [OUT [LANGUAGE...]]]   BUILD the Windows build folder (default
#          build/windows), OUT where the pictures go (default BUILD/ui-shots), the languages
#          of resources/lang to show (default zh_CN zh_TW en_US)
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
bin=$(realpath "${1:-$here/build/windows}")
out=$(realpath -m "${2:-$bin/ui-shots}")
shift $(($# < 2 ? $# : 2))
languages=(zh_CN zh_TW en_US)
[ $# -eq 0 ] || languages=("$@")
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

shot() {  # shot LANGUAGE DPI CLIENTS KEYS NAME
  local language=$1 dpi=$2 clients=$3 keys=$4 name=$5 record picture window title
  # Windows draws Chinese text in Tahoma with a linked CJK font; the prefix links the installed one
  local setup="cp '$here/resources/lang/$language/gdstrings.ini' gdstrings.ini; cp -r '$here/resources/skins' skins
wine reg add 'HKCU\\Software\\Wine\\Drivers' /v Graphics /d x11 /f >/dev/null 2>&1
wine reg add 'HKCU\\Control Panel\\Desktop' /v LogPixels /t REG_DWORD /d $dpi /f >/dev/null 2>&1
wine reg add 'HKLM\\System\\CurrentControlSet\\Hardware Profiles\\Current\\Software\\Fonts' /v LogPixels /t REG_DWORD /d $dpi /f >/dev/null 2>&1
wine reg add 'HKLM\\Software\\Microsoft\\Windows NT\\CurrentVersion\\FontLink\\SystemLink' /v Tahoma /t REG_MULTI_SZ /d 'wqy-microhei.ttc,WenQuanYi Micro Hei' /f >/dev/null 2>&1"
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
  # the window's title is the language's
  title=$(sed -n 's/^STRID_SELECTED_USER_FORM_TITLE=//p' "$here/resources/lang/$language/gdstrings.ini" | tr -d '\r')
  window=$(xwininfo -root -tree 2>/dev/null | awk -v t="\"$title\": (\"mivostart.exe\"" 'index($0, t) { print $1; exit }')
  [ -n "$window" ] && import -window "$window" "$picture" 2>/dev/null || true
  WINEPREFIX=$MIVO_E2E_WORK/$name/prefix wineserver -k >/dev/null 2>&1 || true
  wait $run 2>/dev/null || true
  if [ -s "$picture" ]; then echo "$picture"; else echo "no picture for $name (see $out/$name.out)" >&2; fi
}

for language in "${languages[@]}"; do
  shot "$language" 96 3 "key:down" "login_user_${language}_100_3"
  shot "$language" 96 12 "key:end" "login_user_${language}_100_12"
  shot "$language" 144 3 "key:down" "login_user_${language}_150_3"
  shot "$language" 144 12 "key:end key:up" "login_user_${language}_150_12"
done
