#!/usr/bin/env bash
# Installs what is missing, builds the native, sanitizer and Windows builds, and runs every test; then
# the thread test under ThreadSanitizer and a short run of every fuzz target.
# Every stage runs (and prints ctest's summary) even when an earlier one failed; the script fails at the
# end if any stage did. LETTRIX_JOBS overrides the number of parallel jobs.
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
jobs=${LETTRIX_JOBS:-$(nproc)}

bash "$root/tools/install-deps.sh" || { echo "test-all: installing the dependencies failed" >&2; exit 1; }

results=()
failed=0

build() {  # build <dir> <cmake args...>
  local dir=$1
  shift
  cmake -S "$root" -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null && cmake --build "$dir" -j "$jobs"
}

passed_total=0
failed_total=0
run_tests() {  # run_tests <dir>; tests without a time limit of their own get 15 minutes
  local log="$1/ctest-summary.log" status total bad
  ctest --test-dir "$1" --output-on-failure -j "$jobs" --timeout 900 </dev/null | tee "$log"
  status=${PIPESTATUS[0]}
  # ctest's closing line: "N% tests passed, F tests failed out of T".
  total=$(sed -n 's/.*tests failed out of \([0-9]*\).*/\1/p' "$log" | tail -n 1)
  bad=$(sed -n 's/.* \([0-9]*\) tests failed out of.*/\1/p' "$log" | tail -n 1)
  if [ -n "$total" ] && [ -n "$bad" ]; then
    passed_total=$((passed_total + total - bad))
    failed_total=$((failed_total + bad))
  else
    failed_total=$((failed_total + 1))
  fi
  return "$status"
}

finish_stage() {  # finish_stage <name> <start seconds> <status>
  local verdict=passed
  [ "$3" -eq 0 ] || { verdict=FAILED; failed=1; }
  results+=("$(printf '%-46s %-7s %4ds' "$1" "$verdict" $((SECONDS - $2)))")
}

# Only system DLLs may be imported: the DLL carries its own C++ runtime.
check_imports() {  # check_imports <dll>
  local dump imports dll ok=0
  dump=$(i686-w64-mingw32-objdump -p "$1") || return 1
  imports=$(awk '/DLL Name:/ {print tolower($3)}' <<<"$dump")
  grep -qx kernel32.dll <<<"$imports" || { echo "test-all: no import table found in $1" >&2; return 1; }
  for dll in $imports; do
    case "$dll" in
      kernel32.dll | user32.dll | gdi32.dll | msvcrt.dll | advapi32.dll | ntdll.dll | api-ms-win-*) ;;
      *) echo "test-all: $(basename "$1") imports a non-system DLL: $dll" >&2; ok=1 ;;
    esac
  done
  echo "test-all: $(basename "$1") imports only system DLLs:" $imports
  return $ok
}

echo "== native"
start=$SECONDS
build "$root/build/native"; status=$?
run_tests "$root/build/native" || status=1
finish_stage "native" "$start" "$status"

echo "== native with AddressSanitizer and UndefinedBehaviorSanitizer"
start=$SECONDS
build "$root/build/sanitize" -DLETTRIX_SANITIZE=ON -DLETTRIX_BUILD_BENCH=OFF; status=$?
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1 \
  run_tests "$root/build/sanitize" || status=1
finish_stage "AddressSanitizer + UndefinedBehaviorSanitizer" "$start" "$status"

echo "== Windows 32-bit under Wine"
start=$SECONDS
build "$root/build/windows" -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-i686.cmake"; status=$?
check_imports "$root/build/windows/bin/lettrix.dll" || status=1
# Tests that compare the two builds' pixels find the native build here.
LETTRIX_NATIVE_BUILD="$root/build/native" run_tests "$root/build/windows" || status=1
finish_stage "Windows 32-bit under Wine" "$start" "$status"

# ---- threads and fuzzing: self-contained stages, each folding its own counts into the totals.
# add_counts <passed> <failed>: a stage's counts into the totals; a stage that printed none counts as one
# failure.
add_counts() {
  if [ -n "$1" ] && [ -n "$2" ]; then
    passed_total=$((passed_total + $1))
    failed_total=$((failed_total + $2))
  else
    failed_total=$((failed_total + 1))
  fi
}

echo "== threads under ThreadSanitizer"
start=$SECONDS
tsan="$root/build/tsan"
cmake -S "$root" -B "$tsan" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLETTRIX_TSAN=ON -DLETTRIX_BUILD_TOOLS=OFF \
  -DLETTRIX_BUILD_BENCH=OFF >/dev/null && cmake --build "$tsan" -j "$jobs" --target test_threads
status=$?
TSAN_OPTIONS=halt_on_error=1 ctest --test-dir "$tsan" -R '^test_threads$' --output-on-failure --timeout 900 \
  </dev/null | tee "$tsan/ctest-summary.log"
[ "${PIPESTATUS[0]}" -eq 0 ] || status=1
# ctest's closing line: "N% tests passed, F tests failed out of T".
tsan_bad=$(sed -n 's/.* \([0-9]*\) tests failed out of.*/\1/p' "$tsan/ctest-summary.log" | tail -n 1)
tsan_total=$(sed -n 's/.*tests failed out of \([0-9]*\).*/\1/p' "$tsan/ctest-summary.log" | tail -n 1)
add_counts "${tsan_total:+$((tsan_total - ${tsan_bad:-0}))}" "$tsan_bad"
finish_stage "threads under ThreadSanitizer" "$start" "$status"

# Every fuzz target replays its saved corpus, then fuzzes for a short while (LETTRIX_FUZZ_SECONDS each).
echo "== fuzzing"
start=$SECONDS
mkdir -p "$root/build/fuzz"
LETTRIX_JOBS=$jobs bash "$root/tools/fuzz.sh" "${LETTRIX_FUZZ_SECONDS:-15}" | tee "$root/build/fuzz/summary.log"
status=${PIPESTATUS[0]}
add_counts "$(sed -n 's/^fuzz: \([0-9]*\) passed.*/\1/p' "$root/build/fuzz/summary.log")" \
  "$(sed -n 's/^fuzz: .*, \([0-9]*\) failed$/\1/p' "$root/build/fuzz/summary.log")"
finish_stage "fuzzing (libFuzzer)" "$start" "$status"

echo "== summary"
printf '%s\n' "${results[@]}"
echo "total: ${SECONDS}s"
echo "tests: ${passed_total} passed, ${failed_total} failed"
exit "$failed"
