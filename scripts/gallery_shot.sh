#!/usr/bin/env bash
# A picture of the gallery skin (resources/gallery/: every painting attribute at once) for a
# person to look at, taken as ui_shots.sh takes the login-user window's: skin_view.exe under
# Wine on an X display of its own (Xvfb), at 100%. Writes gallery.png (the screen's picture of
# the window) and gallery_render.png (the same painted off-screen) into the output folder.
#
# Usage: gallery_shot.sh [BUILD [OUT]]   BUILD the Windows build folder (default build/windows),
#                                        OUT where the pictures go (default BUILD/ui-shots)
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
bin=$(realpath "${1:-$here/build/windows}")
out=$(realpath -m "${2:-$bin/ui-shots}")
prefix=$out/work-gallery/prefix
picture=$out/gallery.png
mkdir -p "$out"
rm -rf "$out/work-gallery" "$picture" "$out/gallery_render.png"
mkdir -p "$prefix"

display=99
while [ -e /tmp/.X$display-lock ]; do display=$((display + 1)); done
Xvfb :$display -screen 0 1024x768x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
export DISPLAY=:$display
trap 'WINEPREFIX=$prefix wineserver -k >/dev/null 2>&1 || true; kill $xvfb 2>/dev/null || true' EXIT
for _ in $(seq 50); do [ -e /tmp/.X11-unix/X$display ] && break; sleep 0.1; done

# Wine paths through drive Z:
winpath() { echo "Z:$1" | tr / '\\'; }

# A prefix of its own, booted with the null graphics driver, then switched to the X display.
"$here/scripts/wine-run.sh" "$prefix" cmd.exe /c exit 0 >/dev/null 2>&1 || true
WINEPREFIX=$prefix wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d x11 /f >/dev/null 2>&1
WINEPREFIX=$prefix wineserver -k >/dev/null 2>&1 || true
WINEPREFIX=$prefix wineserver -w >/dev/null 2>&1 || true

"$here/scripts/wine-run.sh" "$prefix" "$bin/tests/duilib/skin_view.exe" "$(winpath "$here/resources/")" gallery \
  gallery.xml "$(winpath "$out/gallery_render.png")" 8000 >"$out/gallery.out" 2>&1 &
run=$!
window=
for _ in $(seq 300); do
  window=$(xwininfo -root -tree 2>/dev/null | awk '/"Mivo skin": \("skin_view.exe"/ { print $1; exit }')
  [ -n "$window" ] && break
  kill -0 $run 2>/dev/null || break
  sleep 0.1
done
sleep 1  # its first paint
[ -n "$window" ] && import -window "$window" "$picture" 2>/dev/null || true
wait $run 2>/dev/null || true
if [ -s "$picture" ]; then echo "$picture"; else echo "no picture of the gallery (see $out/gallery.out)" >&2; fi
[ -s "$out/gallery_render.png" ] && echo "$out/gallery_render.png"
