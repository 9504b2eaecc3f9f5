#!/usr/bin/env bash
# Runs a Windows program under Wine with a quiet, private prefix (default: beside the build's bin/).
# The first run makes the prefix; concurrent first runs wait for it instead of racing.
set -euo pipefail
exe=$1
shift
bindir=$(cd "$(dirname "$exe")" && pwd)
export WINEPREFIX=${LETTRIX_WINEPREFIX:-$(dirname "$bindir")/wineprefix}
export WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml="
export WINEARCH=win32
if [ ! -f "$WINEPREFIX/.lettrix-ready" ]; then
  mkdir -p "$WINEPREFIX"
  (
    flock 9
    if [ ! -f "$WINEPREFIX/.lettrix-ready" ]; then
      wineboot -i >/dev/null 2>&1 || true
      wineserver -w || true
      touch "$WINEPREFIX/.lettrix-ready"
    fi
  ) 9>"$WINEPREFIX.lock"
fi
exec wine "$exe" "$@"
