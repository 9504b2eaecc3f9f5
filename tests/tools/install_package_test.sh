#!/usr/bin/env bash
# Installs the build into a fresh prefix, then builds and runs a consumer project against it twice:
# through find_package(Lettrix) and through pkg-config. Also runs the installed lettrix program.
# Usage: install_package_test.sh <build dir> <consumer source dir> <cmake>
set -euo pipefail
build=$1
consumer=$2
cmake=$3
work=$(mktemp -d /tmp/lettrix-install-XXXXXX)
trap 'rm -rf "$work"' EXIT
prefix="$work/prefix"

fail() { echo "install test: $*" >&2; exit 1; }

"$cmake" --install "$build" --prefix "$prefix" >"$work/install.log" || { cat "$work/install.log"; fail "install failed"; }

for header in lettrix.h lettrix_export.h lettrix_text.h; do
  [ -f "$prefix/include/lettrix/$header" ] || fail "include/lettrix/$header is missing"
done
library=$(find "$prefix" -name 'liblettrix.so.*' -type f | head -n 1)
[ -n "$library" ] || fail "liblettrix.so is missing"
libdir=$(dirname "$library")
[ -L "$libdir/liblettrix.so" ] || fail "the liblettrix.so link is missing"
config=$(find "$prefix" -name LettrixConfig.cmake | head -n 1)
[ -n "$config" ] || fail "LettrixConfig.cmake is missing"
[ -f "$(dirname "$config")/LettrixConfigVersion.cmake" ] || fail "LettrixConfigVersion.cmake is missing"
pc=$(find "$prefix" -name lettrix.pc | head -n 1)
[ -n "$pc" ] || fail "lettrix.pc is missing"
[ -f "$(dirname "$pc")/lettrix_text.pc" ] || fail "lettrix_text.pc is missing"
[ -n "$(find "$prefix" -name 'liblettrix_text.so.*' -type f)" ] || fail "liblettrix_text.so is missing"

echo "== find_package(Lettrix)"
"$cmake" -S "$consumer" -B "$work/consumer" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_BUILD_TYPE=Release >/dev/null
"$cmake" --build "$work/consumer" >/dev/null
"$work/consumer/lettrix_text_consumer"

echo "== pkg-config lettrix"
export PKG_CONFIG_PATH="$(dirname "$pc")"
cmake_version=$(sed -n 's/^set(PACKAGE_VERSION "\(.*\)")$/\1/p' "$(dirname "$config")/LettrixConfigVersion.cmake")
[ -n "$cmake_version" ] && [ "$(pkg-config --modversion lettrix)" = "$cmake_version" ] ||
  fail "pkg-config and CMake disagree on the version"
# The .pc file finds the prefix from where it lies; move the whole installation to prove it.
mv "$prefix" "$work/moved"
pc="$work/moved/${pc#"$prefix"/}"
export PKG_CONFIG_PATH="$(dirname "$pc")"
moved_libdir="$work/moved/${libdir#"$prefix"/}"
cc $(pkg-config --cflags lettrix lettrix_text) "$consumer/text_consumer.c" $(pkg-config --libs lettrix lettrix_text) \
  -Wl,-rpath,"$moved_libdir" -o "$work/pc_text_consumer"
"$work/pc_text_consumer"

echo "== installed lettrix program"
[ -x "$work/moved/bin/lettrix" ] || fail "bin/lettrix is missing"
[ "$("$work/moved/bin/lettrix" --version)" = "lettrix (Lettrix) $cmake_version" ] || fail "the installed lettrix does not run"
echo "install test: passed"
