#!/usr/bin/env bash
# A packet written natively is read by the Windows build under Wine, and the other way round;
# and an update under Wine killed before its Commit leaves the packet as it was.
# Skipped (77) when the native build has no packet_tool: ./mivo test builds it first.
set -euo pipefail
native=${PACKET_TOOL_NATIVE:?} win=${PACKET_TOOL_WIN:?}
if [ ! -x "$native" ]; then
  echo "no native packet_tool at $native (build the native preset first)"
  exit 77
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
winpath() { printf 'Z:%s' "${1//\//\\}"; }
wine_tool() { "$MIVO_WINE_RUN" "$MIVO_WINEPREFIX" "$win" "$@"; }

"$native" write "$work/native.pkt"
wine_tool check "$(winpath "$work/native.pkt")"
wine_tool write "$(winpath "$work/wine.pkt")"
"$native" check "$work/wine.pkt"
echo "native -> Wine and Wine -> native: both read"

cp "$work/wine.pkt" "$work/before.pkt"
if wine_tool spoil "$(winpath "$work/wine.pkt")"; then
  echo "the uncommitted update was not killed"
  exit 1
fi
cmp "$work/before.pkt" "$work/wine.pkt"
"$native" check "$work/wine.pkt"
echo "an update killed before Commit left the packet as it was"
