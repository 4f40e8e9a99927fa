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
      # a crash ends the process instead of waiting in winedbg
      "$wine" reg delete 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug' /v Debugger /f >/dev/null 2>&1 || true
      "$wine" reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f >/dev/null 2>&1 || true
      # The desktop that wineboot started still uses the driver it came up with, and windows
      # of later programs fail on it: end this session so the next one starts with the null
      # driver throughout.
      wineserver -k >/dev/null 2>&1 || true
      wineserver -w >/dev/null 2>&1 || true
      touch "$prefix/.mivo-ready"
    fi
  ) 9>"$prefix.lock"
fi
# Keep one wineserver alive between the many short test programs, and let a first quiet
# program start Wine's own services: whatever they inherit stays open as long as they live,
# and a caller such as ctest waits for its pipes to close.
wineserver -p60 </dev/null >/dev/null 2>&1 || true
"$wine" cmd.exe /c exit 0 </dev/null >/dev/null 2>&1 || true
exec "$wine" "$@"
