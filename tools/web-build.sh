#!/usr/bin/env bash
# Builds the browser playground into build/web/: the library compiled to WebAssembly (Debian's
# emscripten), the page's files, HarfBuzz for the page (npm, pinned by web/package-lock.json), fonts
# copied from Debian's font packages, and the presets, option ranges and generated textures of the
# lettrix program (written by lettrix-web-data from the program's own sources).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
jobs=${LETTRIX_JOBS:-$(nproc)}
out="$root/build/web"
wasm="$root/build/web-wasm"
native="$root/build/native"

# Debian's emscripten needs the system's node modules (acorn) on node's path.
export NODE_PATH=/usr/share/nodejs
command -v emcmake >/dev/null || { echo "web-build: emscripten is not installed (tools/install-deps.sh)" >&2; exit 1; }

emcmake cmake -S "$root" -B "$wasm" -DCMAKE_BUILD_TYPE=Release -DLETTRIX_BUILD_TESTS=OFF \
  -DLETTRIX_BUILD_BENCH=OFF -DLETTRIX_BUILD_TOOLS=OFF >/dev/null
cmake --build "$wasm" -j "$jobs" --target lettrix_wasm

cmake -S "$root" -B "$native" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$native" -j "$jobs" --target lettrix_web_data lettrix_cli

(cd "$root/web" && npm ci --no-audit --no-fund --ignore-scripts --loglevel=error)

rm -rf "$out"
mkdir -p "$out/vendor/harfbuzzjs" "$out/fonts" "$out/textures"
cp "$root"/web/index.html "$root"/web/style.css "$root"/web/app.js "$root"/web/worker.js "$root"/web/painter.js \
  "$root"/web/layout.js "$root"/web/renderer.js "$root"/web/command.js "$root"/web/png.js "$out/"
cp "$wasm/bin/lettrix.mjs" "$wasm/bin/lettrix.wasm" "$out/"
hb="$root/web/node_modules/harfbuzzjs/dist"
cp "$hb/index.mjs" "$hb/harfbuzz.js" "$hb/harfbuzz.wasm" "$out/vendor/harfbuzzjs/"

# The fonts of Debian's font packages that are installed; DejaVu Sans Bold (the program's default) first.
fonts=()
for dir in /usr/share/fonts/truetype/dejavu /usr/share/fonts/truetype/liberation \
  /usr/share/fonts/truetype/lohit-devanagari; do
  [ -d "$dir" ] && while IFS= read -r f; do fonts+=("$f"); done < <(find "$dir" -maxdepth 1 -name '*.ttf' | sort)
done
default_font=/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf
[ -f "$default_font" ] || { echo "web-build: $default_font is missing (fonts-dejavu-core)" >&2; exit 1; }
{
  echo "["
  sep=""
  for f in "$default_font" "${fonts[@]}"; do
    name=$(basename "$f" .ttf)
    [ -f "$out/fonts/$name.ttf" ] && continue
    cp "$f" "$out/fonts/$name.ttf"
    printf '%s  {"name": "%s", "file": "%s.ttf", "path": "%s"}' "$sep" "$name" "$name" "$f"
    sep=$',\n'
  done
  printf '\n]\n'
} >"$out/fonts/fonts.json"

"$native/bin/lettrix-web-data" "$out"
echo "web-build: the page is in $out (serve it with tools/web-serve.sh)"
