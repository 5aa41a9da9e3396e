#!/usr/bin/env bash
# The whole test suite: a release build with warnings as errors, then the same
# tests again under AddressSanitizer and UndefinedBehaviorSanitizer, and the
# editor's thread tests under ThreadSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh

jobs=$(nproc)
suite() {
  local name=$1
  shift
  echo "=== $name build" >&2
  cmake -S . -B "build/$name" -DZEL_WERROR=ON "$@" >/dev/null
  cmake --build "build/$name" -j"$jobs"
  (cd "build/$name" && ctest --output-on-failure -j"$jobs")
}

suite test -DCMAKE_BUILD_TYPE=Release
ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1 UBSAN_OPTIONS=print_stacktrace=1 \
  suite asan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZEL_SANITIZE=address,undefined -DZEL_BUILD_BENCH=OFF

# ThreadSanitizer: only the plug-in and the tests labelled for it, so that the
# third build stays small.
echo "=== tsan build" >&2
cmake -S . -B build/tsan -DZEL_WERROR=ON -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZEL_SANITIZE=thread \
  -DZEL_BUILD_BENCH=OFF >/dev/null
cmake --build build/tsan -j"$jobs" --target plugin_editor_threads_test plugin_hostile_test
(cd build/tsan && ctest --output-on-failure -j"$jobs" -L tsan)

# The host-interface fuzzer, for a bounded minute.
echo "=== fuzz build and run" >&2
bash scripts/fuzz.sh
