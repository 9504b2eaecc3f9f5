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

# The text library at work: joined Arabic, a serif with ligatures, a centred three-line title.
serif=/usr/share/fonts/opentype/freefont/FreeSerifBold.otf
"$build/bin/lettrix" --preset neon --size 80 -o "$gallery/text-arabic.png" "سلام عليكم"
"$build/bin/lettrix" --preset gold --font "$serif" --size 88 -o "$gallery/text-ligatures.png" "Official affairs"
"$build/bin/lettrix" --preset drop-shadow --family "DejaVu Serif:bold" --size 56 --align centre \
  --line-spacing 1.1 -o "$gallery/text-title.png" --text "$(printf 'The Grand\nLettrix\nShow of Type')"
"$build/bin/lettrix" --preset sticker --size 64 -o "$gallery/text-mixed.png" "नमस्ते · Hello · שלום"
for image in text-arabic text-ligatures text-title text-mixed; do echo "gallery: $gallery/$image.png"; done
