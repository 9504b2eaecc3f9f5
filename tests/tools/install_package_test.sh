#!/usr/bin/env bash
# Installs the build into a fresh prefix, then builds and runs a consumer project against it through
# find_package(Lettrix): building it proves the headers, libraries and package files are where their users
# look. Also runs the installed lettrix program.
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
version=$(sed -n 's/^set(PACKAGE_VERSION "\(.*\)")$/\1/p' "$(find "$work/prefix" -name LettrixConfigVersion.cmake)")
[ -n "$version" ] && [ "$("$work/prefix/bin/lettrix" --version)" = "lettrix (Lettrix) $version" ] ||
  fail "the installed lettrix does not run"
echo "install test: passed"
