#!/usr/bin/env bash
# Installs what is missing, builds the native, sanitizer and both Windows builds, and runs every test; then
# the thread test under ThreadSanitizer, a short run of every fuzz target and the web stage.
# Every stage runs (and prints ctest's summary) even when an earlier one failed; the script fails at the
# end if any stage did. A stage this machine cannot run is shown as skipped, with the reason, and its
# tests are counted as skipped, never as passed. LETTRIX_JOBS overrides the number of parallel jobs.
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
jobs=${LETTRIX_JOBS:-$(nproc)}

bash "$root/tools/install-deps.sh" || { echo "test-all: installing the dependencies failed" >&2; exit 1; }

# Every build and the two Wine prefixes take about 3.5 GB together. A disk that fills up half-way shows
# only as odd failures far from the cause (wineboot exits with an empty log), so say it here first.
free_kb=$(df -Pk "$root" | awk 'NR == 2 {print $4}')
echo "test-all: $((free_kb / 1024 / 1024)) GB free on the build's disk"
if [ "${free_kb:-0}" -lt $((4 * 1024 * 1024)) ]; then
  echo "test-all: WARNING: under 4 GB free; a full run needs about 3.5 GB and may fail for want of space" >&2
fi

results=()
failed=0
passed_total=0
failed_total=0
skipped_total=0

build() {  # build <dir> <cmake args...>
  local dir=$1
  shift
  cmake -S "$root" -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null && cmake --build "$dir" -j "$jobs"
}

run_tests() {  # run_tests <dir> [ctest args]; tests without a time limit of their own get 15 minutes
  local dir=$1 log="$1/ctest-summary.log" status total bad
  shift
  ctest --test-dir "$dir" --output-on-failure -j "$jobs" --timeout 900 "$@" </dev/null | tee "$log"
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

count_skipped() {  # count_skipped <dir>: the tests of a build whose tests cannot run here
  local n
  n=$(ctest --test-dir "$1" -N 2>/dev/null | sed -n 's/^Total Tests: \([0-9]*\)/\1/p')
  skipped_total=$((skipped_total + ${n:-0}))
}

finish_stage() {  # finish_stage <name> <start seconds> <status: 0 passed, 77 skipped, other FAILED>
  local verdict=passed
  case "$3" in
    0) ;;
    77) verdict=skipped ;;
    *) verdict=FAILED; failed=1 ;;
  esac
  results+=("$(printf '%-46s %-7s %4ds' "$1" "$verdict" $((SECONDS - $2)))")
}

# The interface's functions, as the public header declares them (the global-memory calls exist only
# off Windows, where kernel32 is missing).
interface_names() {
  sed -n 's/.*LETTRIX_CALL \([A-Za-z0-9_]*\)(.*/\1/p' "$root/include/lettrix/lettrix.h" | grep -v '^LettrixGlobal'
}

# A DLL as a Windows caller needs it: every interface function exported under its plain name, and only
# system DLLs imported (it carries its own C++ runtime).
check_dll() {  # check_dll <objdump> <dll>
  local dump imports exports dll name ok=0 count=0
  dump=$("$1" -p "$2") || return 1
  imports=$(awk '/DLL Name:/ {print tolower($3)}' <<<"$dump")
  exports=$(sed -n '/\[Ordinal\/Name Pointer\] Table/,/^$/ s/^[[:space:]]*\[ *[0-9]*\] //p' <<<"$dump")
  grep -qx kernel32.dll <<<"$imports" || { echo "test-all: no import table found in $2" >&2; return 1; }
  for dll in $imports; do
    case "$dll" in
      kernel32.dll | user32.dll | gdi32.dll | msvcrt.dll | advapi32.dll | ntdll.dll | api-ms-win-*) ;;
      *) echo "test-all: $(basename "$2") imports a non-system DLL: $dll" >&2; ok=1 ;;
    esac
  done
  for name in $(interface_names); do
    if grep -qx "$name" <<<"$exports"; then
      count=$((count + 1))
    else
      echo "test-all: $2 does not export $name under its plain name" >&2
      ok=1
    fi
  done
  echo "test-all: $2 exports all $count interface functions undecorated ($(wc -l <<<"$exports") names" \
    "in all) and imports only system DLLs:" $imports
  return $ok
}

echo "== include dependencies"
start=$SECONDS
# (Not through `tee /dev/stderr`: where stderr is a file, that reopens and truncates it.)
log=$(bash "$root/tools/check-includes.sh"); status=$?
echo "$log"
passed_total=$((passed_total + $(sed -n 's/^check-includes: \([0-9]*\) passed.*/\1/p' <<<"$log")))
failed_total=$((failed_total + $(sed -n 's/^check-includes: [0-9]* passed, \([0-9]*\) failed/\1/p' <<<"$log")))
finish_stage "include dependencies" "$start" "$status"

echo "== native"
start=$SECONDS
build "$root/build/native"; status=$?
run_tests "$root/build/native" || status=1
finish_stage "native" "$start" "$status"

echo "== native with AddressSanitizer and UndefinedBehaviorSanitizer"
start=$SECONDS
build "$root/build/sanitize" -DLETTRIX_SANITIZE=ON -DLETTRIX_BUILD_BENCH=OFF; status=$?
# fontconfig loses a few hundred bytes of its own, once per process, while it reads its configuration
# (a bare FcInitLoadConfigAndFonts shows the same): that is suppressed, every other leak fails.
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1 \
  LSAN_OPTIONS="suppressions=$root/tools/lsan-suppressions.txt:print_suppressions=0" run_tests "$root/build/sanitize" || status=1
finish_stage "AddressSanitizer + UndefinedBehaviorSanitizer" "$start" "$status"

# The Python package was built with the native build. Its tests compare it with that build's program;
# then it is installed into a scratch folder and imported from there, as an installed package.
pytest_count() {  # pytest_count <log> <word>: the number before <word> in pytest's closing line, or 0
  local n
  n=$(tail -n 1 "$1" | grep -o "[0-9]* $2" | grep -o '^[0-9]*')
  echo "${n:-0}"
}

run_pytest() {  # run_pytest <log> <pytest args...>
  local log=$1 status bad
  shift
  PYTHONDONTWRITEBYTECODE=1 /usr/bin/python3 -m pytest -p no:cacheprovider "$@" </dev/null | tee "$log"
  status=${PIPESTATUS[0]}
  # pytest's closing line: "== 3 failed, 339 passed, 2 skipped, 1 error in 5.2s ==".
  bad=$(($(pytest_count "$log" failed) + $(pytest_count "$log" error)))
  [ "$status" -ne 0 ] && [ "$bad" -eq 0 ] && bad=1
  passed_total=$((passed_total + $(pytest_count "$log" passed)))
  failed_total=$((failed_total + bad))
  skipped_total=$((skipped_total + $(pytest_count "$log" skipped)))
  return "$status"
}

echo "== Python package"
start=$SECONDS
python_build="$root/build/native/python"
if ls "$python_build"/lettrix/_lettrix*.so >/dev/null 2>&1; then
  PYTHONPATH="$python_build" LETTRIX_PROGRAM="$root/build/native/bin/lettrix" \
    run_pytest "$root/build/native/pytest-summary.log" "$root/python/tests"; status=$?
  staged="$root/build/native/python-install"
  rm -rf "$staged"
  site=$(sed -n 's/^LETTRIX_PYTHON_INSTALL_DIR:PATH=//p' "$root/build/native/CMakeCache.txt")
  case "$site" in
    /*) site="$staged$site" ;;
    *) site="$staged/prefix/$site" ;;
  esac
  if DESTDIR="$staged" cmake --install "$root/build/native" --prefix /prefix >/dev/null &&
    (cd / && env -i PATH=/usr/bin:/bin PYTHONPATH="$site" \
      /usr/bin/python3 -c "import lettrix; lettrix.render('Installed', size=24)"); then
    echo "test-all: the installed lettrix package imports and draws"
  else
    echo "test-all: the installed lettrix package does not import or draw" >&2
    failed_total=$((failed_total + 1))
    status=1
  fi
else
  echo "test-all: the native build made no lettrix Python module" >&2
  failed_total=$((failed_total + 1))
  status=1
fi
finish_stage "Python package" "$start" "$status"

# The 32-bit DLL is the first target: it is built and checked on every machine, and its tests run
# wherever 32-bit programs can. Tests that compare the builds' pixels find the native build through
# LETTRIX_NATIVE_BUILD.
echo "== Windows 32-bit"
start=$SECONDS
build "$root/build/windows" -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-i686.cmake"; status=$?
check_dll i686-w64-mingw32-objdump "$root/build/windows/bin/lettrix.dll" || status=1
finish_stage "Windows 32-bit: build, DLL exports and imports" "$start" "$status"

start=$SECONDS
if ! why=$(bash "$root/tools/can-run-32bit.sh"); then
  :
elif [ ! -x /usr/lib/wine/wine ]; then
  why="wine32 is not installed"
else
  why=""
fi
if [ -n "$why" ]; then
  echo "test-all: 32-bit Windows tests skipped: $why; the 64-bit Windows stage stands in for them"
  count_skipped "$root/build/windows"
  finish_stage "Windows 32-bit tests under wine32" "$start" 77
else
  LETTRIX_NATIVE_BUILD="$root/build/native" run_tests "$root/build/windows"; status=$?
  finish_stage "Windows 32-bit tests under wine32" "$start" "$status"
fi

echo "== Windows 64-bit under wine64"
start=$SECONDS
build "$root/build/windows64" -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-x86_64.cmake"; status=$?
check_dll x86_64-w64-mingw32-objdump "$root/build/windows64/bin/lettrix.dll" || status=1
LETTRIX_NATIVE_BUILD="$root/build/native" run_tests "$root/build/windows64" || status=1
finish_stage "Windows 64-bit under wine64" "$start" "$status"

echo "== threads under ThreadSanitizer"
start=$SECONDS
tsan="$root/build/tsan"
cmake -S "$root" -B "$tsan" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLETTRIX_TSAN=ON -DLETTRIX_BUILD_TOOLS=OFF \
  -DLETTRIX_BUILD_BENCH=OFF >/dev/null && cmake --build "$tsan" -j "$jobs" --target test_threads
status=$?
TSAN_OPTIONS=halt_on_error=1 run_tests "$tsan" -R '^test_threads$' || status=1
finish_stage "threads under ThreadSanitizer" "$start" "$status"

# Every fuzz target replays its saved corpus, then fuzzes for a short while (LETTRIX_FUZZ_SECONDS each).
echo "== fuzzing"
start=$SECONDS
mkdir -p "$root/build/fuzz"
LETTRIX_JOBS=$jobs bash "$root/tools/fuzz.sh" "${LETTRIX_FUZZ_SECONDS:-15}" | tee "$root/build/fuzz/summary.log"
status=${PIPESTATUS[0]}
fuzz_counts=$(tail -n 1 "$root/build/fuzz/summary.log")
if [[ "$fuzz_counts" =~ ^fuzz:\ ([0-9]+)\ passed,\ ([0-9]+)\ failed$ ]]; then
  passed_total=$((passed_total + BASH_REMATCH[1]))
  failed_total=$((failed_total + BASH_REMATCH[2]))
else
  failed_total=$((failed_total + 1))
fi
finish_stage "fuzzing (libFuzzer)" "$start" "$status"

# ---- web: the library in WebAssembly and the playground page, tested in Debian's Chromium
echo "== web: WebAssembly build and browser tests"
start=$SECONDS
if ! command -v emcmake >/dev/null || [ ! -x /usr/bin/chromium ] || ! command -v npm >/dev/null; then
  echo "test-all: web stage skipped: emscripten, chromium or npm is not installed and could not be installed"
  finish_stage "web: WebAssembly + Chromium" "$start" 77
else
  status=0
  LETTRIX_JOBS=$jobs bash "$root/tools/web-build.sh" || status=1
  if [ "$status" -eq 0 ]; then
    web_log="$root/build/web-test.log"
    # The run also takes the README's screenshot of the page.
    node "$root/web/tests/browser-test.mjs" "$root/build/web" "$root/build/native/bin/lettrix" \
      "$root/docs/web/playground.png" </dev/null | tee "$web_log"
    status=${PIPESTATUS[0]}
    web_counts=$(tail -n 1 "$web_log")
    if [[ "$web_counts" =~ ^([0-9]+)\ passed,\ ([0-9]+)\ failed$ ]]; then
      passed_total=$((passed_total + BASH_REMATCH[1]))
      failed_total=$((failed_total + BASH_REMATCH[2]))
    else
      failed_total=$((failed_total + 1))
    fi
  else
    failed_total=$((failed_total + 1))
  fi
  finish_stage "web: WebAssembly + Chromium" "$start" "$status"
fi

echo "== summary"
printf '%s\n' "${results[@]}"
echo "total: ${SECONDS}s"
echo "tests: ${passed_total} passed, ${failed_total} failed, ${skipped_total} skipped"
exit "$failed"
