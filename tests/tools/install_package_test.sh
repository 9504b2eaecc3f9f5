#!/usr/bin/env bash
# Installs the build into a fresh prefix, then builds and runs a consumer project against it twice: through
# find_package(Lettrix) and, with the installation moved, through pkg-config. Building it proves the headers,
# libraries and package files are where their users look. Also runs the installed lettrix program.
# Usage: install_package_test.sh <build dir> <consumer source dir> <cmake>
set -euo pipefail
build=$1 consumer=$2 cmake=$3
work=$(mktemp -d /tmp/lettrix-install-XXXXXX)
trap 'rm -rf "$work"' EXIT
fail() { echo "install test: $*" >&2; exit 1; }

"$cmake" --install "$build" --prefix "$work/prefix" >"$work/install.log" || { cat "$work/install.log"; fail "install failed"; }
"$cmake" -S "$consumer" -B "$work/consumer" -DCMAKE_PREFIX_PATH="$work/prefix" -DCMAKE_BUILD_TYPE=Release >/dev/null
"$cmake" --build "$work/consumer" >/dev/null
"$work/consumer/lettrix_text_consumer"

# The .pc file finds the prefix from where it lies; move the whole installation to prove it.
mv "$work/prefix" "$work/moved"
pc=$(find "$work/moved" -name lettrix.pc | head -n 1)
libdir=$(dirname "$(find "$work/moved" -name 'liblettrix.so.*' -type f | head -n 1)")
export PKG_CONFIG_PATH="$(dirname "$pc")"
version=$(sed -n 's/^set(PACKAGE_VERSION "\(.*\)")$/\1/p' "$(find "$work/moved" -name LettrixConfigVersion.cmake)")
[ -n "$version" ] && [ "$(pkg-config --modversion lettrix)" = "$version" ] || fail "pkg-config and CMake disagree on the version"
cc $(pkg-config --cflags lettrix lettrix_text) "$consumer/text_consumer.c" $(pkg-config --libs lettrix lettrix_text) \
  -Wl,-rpath,"$libdir" -o "$work/pc_text_consumer"
"$work/pc_text_consumer"
[ "$("$work/moved/bin/lettrix" --version)" = "lettrix (Lettrix) $version" ] || fail "the installed lettrix does not run"
echo "install test: passed"
