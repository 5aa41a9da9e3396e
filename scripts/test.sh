#!/usr/bin/env bash
# The whole test suite: a release build with warnings as errors, the same
# tests again under AddressSanitizer and UndefinedBehaviorSanitizer, the
# thread tests under ThreadSanitizer, and a bounded run of the host-interface
# fuzzer. Ends with one line counting every test that ran.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh

jobs=$(nproc)
passed=0
# Runs ctest in a build folder (extra arguments go to ctest) and counts its tests.
run_ctest() {
  local dir=$1
  shift
  local log
  log=$(mktemp)
  (cd "$dir" && ctest --output-on-failure -j"$jobs" "$@") | tee "$log"
  passed=$((passed + $(sed -n 's/.*tests passed, 0 tests failed out of \([0-9]*\).*/\1/p' "$log")))
  rm -f "$log"
}
suite() {
  local name=$1
  shift
  echo "=== $name build" >&2
  cmake -S . -B "build/$name" -DZEL_WERROR=ON "$@" >/dev/null
  cmake --build "build/$name" -j"$jobs"
  run_ctest "build/$name"
}

suite test -DCMAKE_BUILD_TYPE=Release
# The sanitizer builds carry line tables only: enough for the reports, and
# far cheaper to build than full debug information.
sanitized=(-DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS=-g1 -DZEL_BUILD_BENCH=OFF)
ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1 UBSAN_OPTIONS=print_stacktrace=1 \
  suite asan "${sanitized[@]}" -DZEL_SANITIZE=address,undefined

# The host-interface fuzzer's bounded minute runs on one core beside the
# ThreadSanitizer build and tests.
echo "=== fuzz build" >&2
bash scripts/fuzz.sh --build-only
bash scripts/fuzz.sh --run-only >build/fuzz/run.log 2>&1 &
fuzzer=$!
trap 'kill $fuzzer 2>/dev/null || true' EXIT

# ThreadSanitizer: only the plug-in and the tests labelled for it, so that the
# third build stays small.
echo "=== tsan build" >&2
cmake -S . -B build/tsan -DZEL_WERROR=ON "${sanitized[@]}" -DZEL_SANITIZE=thread >/dev/null
cmake --build build/tsan -j"$jobs" --target plugin_editor_threads_test plugin_hostile_test
run_ctest build/tsan -L tsan

echo "=== fuzz run" >&2
if ! wait $fuzzer; then
  cat build/fuzz/run.log
  echo "the fuzzer found a fault (see build/fuzz/findings/)" >&2
  exit 1
fi
trap - EXIT
grep -E '^(Done|stat::number_of_executed_units|stat::average_exec_per_sec)' build/fuzz/run.log
passed=$((passed + 1))

echo "total: $passed passed, 0 failed"
