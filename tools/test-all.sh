#!/usr/bin/env bash
# Installs what is missing, builds the native, sanitizer and Windows builds, and runs every test.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
jobs=$(nproc)

bash "$root/tools/install-deps.sh"

build() {  # build <dir> <cmake args...>
  local dir=$1
  shift
  cmake -S "$root" -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null
  cmake --build "$dir" -j "$jobs"
}

echo "== native"
build "$root/build/native"
ctest --test-dir "$root/build/native" --output-on-failure -j "$jobs"

echo "== native with AddressSanitizer and UndefinedBehaviorSanitizer"
build "$root/build/sanitize" -DLETTRIX_SANITIZE=ON -DLETTRIX_BUILD_BENCH=OFF
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1 \
  ctest --test-dir "$root/build/sanitize" --output-on-failure -j "$jobs"

echo "== Windows 32-bit under Wine"
build "$root/build/windows" -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-i686.cmake"
# Only system DLLs may be imported.
imports=$(i686-w64-mingw32-objdump -p "$root/build/windows/bin/lettrix.dll" | awk '/DLL Name:/ {print tolower($3)}')
for dll in $imports; do
  case "$dll" in
    kernel32.dll | user32.dll | gdi32.dll | msvcrt.dll | advapi32.dll | ntdll.dll | api-ms-win-*) ;;
    *) echo "lettrix.dll imports a non-system DLL: $dll" >&2; exit 1 ;;
  esac
done
LETTRIX_NATIVE_BUILD="$root/build/native" \
  ctest --test-dir "$root/build/windows" --output-on-failure -j "$jobs"
