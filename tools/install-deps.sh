#!/usr/bin/env bash
# Installs, from Debian's packages, whatever the two builds and their tests need and is not yet on this
# machine. Safe to run again: a machine that has everything is left alone.
set -euo pipefail

# The text library stands on FreeType, HarfBuzz, FriBidi and fontconfig; its tests draw DejaVu (Arabic,
# Hebrew, kerning), FreeFont's CFF .otf fonts (ligatures, Devanagari fallback) and Lohit Devanagari.
native_pkgs=(cmake make g++ pkg-config libagg-dev googletest libgtest-dev libbenchmark-dev
             libfreetype-dev libpng-dev fonts-dejavu-core libfontconfig-dev libharfbuzz-dev libfribidi-dev
             fonts-freefont-otf fonts-lohit-deva libcairo2-dev)
# Both Windows builds cross-compile on every machine; the 64-bit programs run under wine64.
windows_pkgs=(g++-mingw-w64-i686-posix g++-mingw-w64-x86-64-posix wine wine64)
# The Python package, for Debian's own interpreter, and what its tests use.
python_pkgs=(python3 python3-dev python3-pybind11 pybind11-dev python3-numpy python3-pytest python3-pil)
# The browser playground and its tests: the library compiled to WebAssembly, npm for the page's pinned
# packages, Chromium to run the tests, the fonts the page offers. Installed on their own, so a machine
# that cannot have them still gets everything else (the web stage then says it was skipped).
web_pkgs=(emscripten chromium fonts-dejavu-core fonts-dejavu-extra fonts-liberation)
# Node and npm may come from another packaging of Node than Debian's; either will do.
command -v npm >/dev/null || web_pkgs+=(nodejs npm)

want_windows=1
want_web=1
[ "${1:-}" = "--native-only" ] && want_windows=0 && want_web=0

# wine32 (an i386 package) is only worth installing where 32-bit programs can run at all.
want_wine32=0
if [ "$want_windows" = 1 ]; then
  if reason=$(bash "$(dirname "$0")/can-run-32bit.sh"); then
    want_wine32=1
  else
    echo "install-deps: not installing wine32: $reason"
  fi
fi

installed() { dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q 'install ok installed'; }
missing=()
for p in "${native_pkgs[@]}" "${python_pkgs[@]}"; do
  installed "$p" || missing+=("$p")
done
if [ "$want_windows" = 1 ]; then
  for p in "${windows_pkgs[@]}"; do
    installed "$p" || missing+=("$p")
  done
fi
if [ "$want_wine32" = 1 ]; then
  installed wine32:i386 || missing+=(wine32:i386)
fi
web_missing=()
if [ "$want_web" = 1 ]; then
  for p in "${web_pkgs[@]}"; do
    installed "$p" || web_missing+=("$p")
  done
fi
if [ "${#missing[@]}" -eq 0 ] && [ "${#web_missing[@]}" -eq 0 ]; then
  echo "install-deps: nothing to install"
  exit 0
fi

SUDO=""
[ "$(id -u)" -ne 0 ] && SUDO="sudo"
export DEBIAN_FRONTEND=noninteractive

if [ "$want_wine32" = 1 ] && ! dpkg --print-foreign-architectures | grep -qx i386; then
  $SUDO dpkg --add-architecture i386
fi

# The security suite's i386 index often lags the amd64 one, or fails to download at all; apt-get update
# then exits 100 although every other index is fine. Keep going: a real failure shows up in the install.
set +e
$SUDO apt-get update -q >/tmp/lettrix-apt-update.log 2>&1
rc=$?
set -e
if [ "$rc" -ne 0 ]; then
  echo "install-deps: apt-get update exited $rc (a lagging index is tolerated); continuing"
  grep -E '^(E|W):' /tmp/lettrix-apt-update.log | head -5 || true
fi

# With the i386 security index missing or behind, an amd64 library taken from the security suite can no
# longer match its i386 twin (Multi-Arch: same needs equal versions). Ranking the security suite below the
# main one for this install makes apt pick the main suite's version for both architectures.
pin=/etc/apt/preferences.d/lettrix-security-below-main
cleanup() { $SUDO rm -f "$pin"; }
trap cleanup EXIT
printf 'Package: *\nPin: release l=Debian-Security\nPin-Priority: 100\n' | $SUDO tee "$pin" >/dev/null

if [ "${#missing[@]}" -gt 0 ]; then
  echo "install-deps: installing ${missing[*]}"
  if ! $SUDO apt-get install -y -q --no-install-recommends "${missing[@]}"; then
    echo "install-deps: FAILED to install: ${missing[*]}" >&2
    exit 1
  fi
fi
if [ "${#web_missing[@]}" -gt 0 ]; then
  echo "install-deps: installing the web tools: ${web_missing[*]}"
  if ! $SUDO apt-get install -y -q --no-install-recommends -o DPkg::Lock::Timeout=900 "${web_missing[@]}"; then
    echo "install-deps: could not install the web tools (${web_missing[*]}); the web stage will be skipped" >&2
  fi
fi
echo "install-deps: done"
