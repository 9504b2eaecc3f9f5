#!/usr/bin/env bash
# lettrix-demo.exe (GDI fonts, lettrix.dll, under Wine) against the native lettrix program, preset by preset:
# the same outline block must give the same bytes; the same text, laid out by each program's own font engine,
# may differ only where the glyph shapes differ.
# Usage: demo_matches_native.sh <lettrix-demo.exe> <source dir>; LETTRIX_NATIVE_BUILD names the native build
# (default <source dir>/build/native), which has the lettrix program.
set -euo pipefail
demo=$1 root=$2
lettrix="${LETTRIX_NATIVE_BUILD:-$root/build/native}/bin/lettrix"
[ -x "$lettrix" ] || { echo "missing $lettrix: build the native build first (or set LETTRIX_NATIVE_BUILD)" >&2; exit 1; }
work=$(mktemp -d /tmp/lettrix-demo-XXXXXX)
trap 'rm -rf "$work"' EXIT
wine_run() { "$root/tools/wine-run.sh" "$demo" "$@"; }
failures=0
check() { "${@:2}" || { echo "FAILED: $1" >&2; failures=$((failures + 1)); }; }  # check <what> <command...>

# compare A B [TOLERANCE MAX_SHARE]: two images are alike when every byte is equal, or when at most the share
# MAX_SHARE (0..1) of the pixels differ by more than TOLERANCE in some byte.
compare() {
  /usr/bin/python3 - "$@" <<'PY'
import sys
import numpy as np
from PIL import Image
a, b = (np.asarray(Image.open(path).convert("RGBA"), dtype=np.int16) for path in sys.argv[1:3])
tolerance, most = (int(sys.argv[3]), float(sys.argv[4])) if len(sys.argv) > 3 else (0, 0.0)
share = float((np.abs(a - b).max(axis=2) > tolerance).mean()) if a.shape == b.shape else 1.0
print(f"{share:.3%} of the pixels differ by more than {tolerance} (sizes {a.shape} and {b.shape})")
sys.exit(share > most)
PY
}

check "--version" eval 'wine_run --version | grep -q "^lettrix-demo (Lettrix) "'
for preset in $("$lettrix" --list-presets | awk '{print $1}'); do
  echo "== $preset"
  "$lettrix" --preset "$preset" --dump-outline "$work/$preset.block" -o "$work/$preset-native.tga"
  wine_run --preset "$preset" --outline-block "$work/$preset.block" -o "$work/$preset-demo-block.tga"
  check "$preset: same block" compare "$work/$preset-native.tga" "$work/$preset-demo-block.tga"
  "$lettrix" --preset "$preset" --canvas 800x240 -o "$work/$preset-native-text.tga"
  wine_run --preset "$preset" --canvas 800x240 -o "$work/$preset-demo-text.tga"
  check "$preset: same text" compare "$work/$preset-native-text.tga" "$work/$preset-demo-text.tga" 64 0.03
done
[ "$failures" = 0 ] || { echo "$failures comparisons failed" >&2; exit 1; }
echo "demo and native program agree"
