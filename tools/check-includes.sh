#!/usr/bin/env bash
# Checks the library's #include lines against the way its folders may depend on each other:
#   api/ -> render/ -> effects/ -> settings/ -> image/ -> platform/
# A folder may include itself and the folders after it, never one before it. Only effects/, which owns
# the rasterizer and the kernels, includes AGG headers. <windows.h> (and the Win32 wrappers that pull it
# in) is included only by platform/'s own sources and platform/win32/, so that no header another folder
# reads brings it along; _WIN32 is tested only in platform/ and the export header. Prints each offending
# line, then "check-includes: N passed, N failed" (one count per rule); fails when any rule is broken.
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root" || exit 1

order=(api render effects settings image platform)
export_header=include/lettrix/lettrix_export.h

sources() {  # sources <folder...>: the C and C++ files under them
  find "$@" -type f \( -name '*.h' -o -name '*.hpp' -o -name '*.c' -o -name '*.cpp' \) | sort
}

passed=0
failed=0
rule() {  # rule <name> <offending lines>
  if [ -z "$2" ]; then
    passed=$((passed + 1))
    echo "check-includes: $1: ok"
  else
    failed=$((failed + 1))
    echo "check-includes: $1: FAILED"
    sed 's/^/  /' <<<"$2"
  fi
}

# Folders before position i in the order are the ones a file at position i must not include.
upward=""
for i in "${!order[@]}"; do
  folder=${order[$i]}
  [ "$i" -eq 0 ] && continue
  above=$(IFS='|'; echo "${order[*]:0:$i}")
  hits=$(sources "$folder" | xargs grep -nE "^[[:space:]]*#[[:space:]]*include[[:space:]]*[\"<]($above)/" || true)
  [ -n "$hits" ] && upward+="${upward:+$'\n'}$hits"
done
rule "no folder includes a folder above it (${order[*]})" "$upward"

library=("${order[@]}" include)
agg=$(sources "${library[@]}" | grep -v '^effects/' |
  xargs grep -nE '^[[:space:]]*#[[:space:]]*include[[:space:]]*[<"]agg_' || true)
rule "AGG headers only in effects/" "$agg"

# The Win32 wrappers pull <windows.h> in, so they count as it.
windows=$(sources "${library[@]}" | grep -vE '^platform/(.*\.cpp|win32/.*)$' | grep -vx "$export_header" |
  xargs grep -niE '^[[:space:]]*#[[:space:]]*include[[:space:]]*[<"](windows\.h|platform/win32/)' || true)
rule "<windows.h> only in platform/'s sources and $export_header" "$windows"

win32=$(sources "${library[@]}" | grep -v '^platform/' | grep -vx "$export_header" |
  xargs grep -nE '\b_WIN32\b' || true)
rule "_WIN32 only in platform/ and $export_header" "$win32"

echo "check-includes: $passed passed, $failed failed"
[ "$failed" -eq 0 ]
