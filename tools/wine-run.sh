#!/usr/bin/env bash
# Runs a Windows program under Wine with a quiet, private prefix (default: beside the build's bin/, or
# LETTRIX_WINEPREFIX). ctest uses it as the emulator of the Windows builds and may start many at once.
#  - A 32-bit program runs under the 32-bit loader in a win32 prefix, a 64-bit one under wine64 in a
#    win64 prefix: each build tree has its own prefix, so the two never share one.
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
# The program's machine type, from its PE header: 0x8664 is x86-64, anything else is run as 32-bit.
pe_offset=$(od -An -tu4 -j60 -N4 "$exe" | tr -d ' ')
machine=$(od -An -tx2 -j$((pe_offset + 4)) -N2 "$exe" | tr -d ' ')
if [ "$machine" = 8664 ]; then
  export WINEARCH=win64
  loader=/usr/lib/wine/wine64
else
  export WINEARCH=win32
  loader=/usr/lib/wine/wine
fi
[ -x "$loader" ] || loader=$(command -v wine)
export WINELOADER=$loader
export HOME=${HOME:-$WINEPREFIX}
unset DISPLAY WAYLAND_DISPLAY  # tests open no windows; never pop up dialogs on a developer's screen

# Wine may wait for input on a closed stdin; give it an empty one.
if ! { true <&0; } 2>/dev/null; then exec </dev/null; fi

if [ ! -f "$WINEPREFIX/.lettrix-ready" ]; then
  mkdir -p "$WINEPREFIX"
  (
    flock 9
    if [ ! -f "$WINEPREFIX/.lettrix-ready" ]; then
      if ! "$loader" wineboot -i </dev/null >"$WINEPREFIX.log" 2>&1 9>&-; then
        # A full disk is the usual cause (a new prefix takes 0.6-1.3 GB) and leaves the log empty too.
        echo "wine-run.sh: wineboot failed to make $WINEPREFIX (see $WINEPREFIX.log);" \
          "free there: $(df -Ph "$WINEPREFIX" | awk 'NR == 2 {print $4}')" >&2
        tail -n 20 "$WINEPREFIX.log" >&2 || true
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
    "$loader" wineboot </dev/null >/dev/null 2>&1 9>&- || true
  fi
) 9>"$WINEPREFIX.lock"
exec "$loader" "$exe" "$@"
