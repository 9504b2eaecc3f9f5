#!/usr/bin/env bash
# Builds the libFuzzer targets of fuzz/ (clang, AddressSanitizer, UndefinedBehaviorSanitizer) in their
# own build folder and runs each for SECONDS (default 60), one after the other. Each target first
# replays its saved corpus (the seeds in fuzz/corpus/<target> and what earlier runs on this machine
# added in the build folder); then it fuzzes. A crash, a sanitizer report, a broken promise, an input
# that runs longer than 10 s or a process that passes 2 GB fails the target, and the input is saved in
# <build>/findings/<target>/ (add it to tests/crashers once the fault is fixed).
#
# Prints one line per target (executions, coverage, result) and ends with "fuzz: N passed, N failed".
# LETTRIX_FUZZ_BUILD overrides the build folder, LETTRIX_JOBS the number of build jobs.
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
seconds=${1:-60}
build=${LETTRIX_FUZZ_BUILD:-$root/build/fuzz}
jobs=${LETTRIX_JOBS:-$(nproc)}
targets=(fuzz_render fuzz_outline_decoder fuzz_tga_loader fuzz_tool_tga fuzz_tool_options fuzz_text_layout)

launcher=()
if command -v ccache >/dev/null; then
  launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache)
fi
mkdir -p "$build"
if ! { CC=clang CXX=clang++ cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLETTRIX_FUZZ=ON \
  -DLETTRIX_BUILD_TESTS=OFF -DLETTRIX_BUILD_BENCH=OFF -DLETTRIX_BUILD_TOOLS=OFF "${launcher[@]}" &&
  cmake --build "$build" -j "$jobs" --target "${targets[@]}"; } >"$build/build.log" 2>&1; then
  tail -n 30 "$build/build.log" >&2
  echo "fuzz: building the targets failed (log: $build/build.log)" >&2
  echo "fuzz: 0 passed, ${#targets[@]} failed"
  exit 1
fi

# fontconfig's own loss while it reads its configuration is no finding of ours.
export LSAN_OPTIONS="suppressions=$root/tools/lsan-suppressions.txt:print_suppressions=0${LSAN_OPTIONS:+:$LSAN_OPTIONS}"

passed=0
failed=0
lines=()
for target in "${targets[@]}"; do
  name=${target#fuzz_}
  seeds="$root/fuzz/corpus/$name"
  corpus="$build/corpus/$name"
  findings="$build/findings/$name"
  log="$build/$target.log"
  mkdir -p "$corpus" "$findings"
  limits=(-timeout=10 -rss_limit_mb=2048 -artifact_prefix="$findings/" -print_final_stats=1)

  # libFuzzer runs every saved input once before it makes new ones (the time given includes that
  # replay); new inputs join the build's corpus.
  status=0
  "$build/bin/$target" "${limits[@]}" -max_total_time="$seconds" "$corpus" "$seeds" >"$log" 2>&1 || status=1

  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -n 1)
  cov=$(grep -o 'cov: [0-9]*' "$log" | tail -n 1 | cut -d' ' -f2)
  ft=$(grep -o 'ft: [0-9]*' "$log" | tail -n 1 | cut -d' ' -f2)
  if [ "$status" -eq 0 ]; then
    verdict=passed
    passed=$((passed + 1))
  else
    verdict=FAILED
    failed=$((failed + 1))
    echo "fuzz: $target failed; its log is $log, the input is in $findings:" >&2
    grep -E '^(==[0-9]+==ERROR|SUMMARY|artifact_prefix|Test unit written|.*deadly signal|.*-timeout|.*out-of-memory)' \
      "$log" | tail -n 8 >&2
  fi
  lines+=("$(printf '%-22s %-7s %10s runs  cov %6s  ft %6s  corpus %5s' "$target" "$verdict" "${runs:-?}" \
    "${cov:-?}" "${ft:-?}" "$(ls "$corpus" | wc -l)")")
done

printf '%s\n' "${lines[@]}"
echo "fuzz: ${passed} passed, ${failed} failed"
[ "$failed" -eq 0 ]
