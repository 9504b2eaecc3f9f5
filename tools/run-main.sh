#!/usr/bin/env bash
# The main job: installs what is missing, builds the native build and draws every preset of the lettrix
# program into docs/gallery/<preset>.png.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build="$root/build/native"
gallery="$root/docs/gallery"

bash "$root/tools/install-deps.sh" --native-only
cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" -j "$(nproc)" --target lettrix_cli

mkdir -p "$gallery"
presets=$("$build/bin/lettrix" --list-presets | awk '{print $1}')
for preset in $presets; do
  "$build/bin/lettrix" --preset "$preset" -o "$gallery/$preset.png"
  echo "gallery: $gallery/$preset.png"
done
