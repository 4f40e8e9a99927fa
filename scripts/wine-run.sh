#!/usr/bin/env bash
# Runs a Windows program under Wine in the given prefix, creating the prefix on first use.
# Usage: wine-run.sh PREFIX program.exe [args...]
set -euo pipefail
prefix=$1; shift
export WINEPREFIX=$prefix WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
wine=wine
[ -x /usr/lib/wine/wine64 ] && wine=/usr/lib/wine/wine64
if [ ! -f "$prefix/.mivo-ready" ]; then
  mkdir -p "$prefix"
  (
    flock 9
    if [ ! -f "$prefix/.mivo-ready" ]; then
      "$wine" wineboot -i >/dev/null 2>&1 || true
      # the null graphics driver: windows and messages work without a display
      "$wine" reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f >/dev/null 2>&1
      wineserver -w
      touch "$prefix/.mivo-ready"
    fi
  ) 9>"$prefix.lock"
fi
exec "$wine" "$@"
