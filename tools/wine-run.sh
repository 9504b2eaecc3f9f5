#!/usr/bin/env bash
# Runs a Windows program under Wine with a quiet, private prefix (default: beside the build's bin/, or
# LETTRIX_WINEPREFIX). ctest uses it as the emulator of the Windows build and may start many at once.
#  - The first run makes the prefix; concurrent first runs wait for it instead of racing.
#  - Works without a display, without a terminal and with stdin closed (CI).
set -euo pipefail
[ $# -ge 1 ] || { echo "usage: wine-run.sh program.exe [arguments...]" >&2; exit 2; }
exe=$1
shift
bindir=$(cd "$(dirname "$exe")" && pwd)
export WINEPREFIX=${LETTRIX_WINEPREFIX:-$(dirname "$bindir")/wineprefix}
export WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml="  # no prompts to install Mono or Gecko
export WINEARCH=win32
export HOME=${HOME:-$WINEPREFIX}
unset DISPLAY WAYLAND_DISPLAY  # tests open no windows; never pop up dialogs on a developer's screen

# Wine may wait for input on a closed stdin; give it an empty one.
if ! { true <&0; } 2>/dev/null; then exec </dev/null; fi

if [ ! -f "$WINEPREFIX/.lettrix-ready" ]; then
  mkdir -p "$WINEPREFIX"
  (
    flock 9
    if [ ! -f "$WINEPREFIX/.lettrix-ready" ]; then
      if ! wineboot -i </dev/null >"$WINEPREFIX.log" 2>&1 9>&-; then
        echo "wine-run.sh: wineboot failed to make $WINEPREFIX (see $WINEPREFIX.log)" >&2
        exit 1
      fi
      wineserver -w 9>&-
      touch "$WINEPREFIX/.lettrix-ready"
    fi
  ) 9>"$WINEPREFIX.lock"
fi

# Wine's server and its own background programs (services, desktop, device manager) outlive the
# program that starts them and inherit its stdout: ctest would then wait for them to exit before it
# counts the test as finished. So whoever finds no server running starts both, detached, first; the
# server stays up for a few seconds after its last client so that a batch of tests shares it. Neither
# may inherit the lock's descriptor, or the lock would be held for as long as they live.
(
  flock 9
  if wineserver -p5 </dev/null >/dev/null 2>&1 9>&-; then  # 0: a fresh server; 2: one is running
    wineboot </dev/null >/dev/null 2>&1 9>&- || true
  fi
) 9>"$WINEPREFIX.lock"
exec wine "$exe" "$@"
