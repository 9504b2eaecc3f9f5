#!/usr/bin/env bash
# Serves the built playground (tools/web-build.sh) on 127.0.0.1 and prints its address. Port: the first
# argument, or 8080; 0 picks a free one.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
[ -f "$root/build/web/index.html" ] || { echo "web-serve: build the page first: bash tools/web-build.sh" >&2; exit 1; }
exec node "$root/web/serve.mjs" "$root/build/web" "${1:-8080}"
