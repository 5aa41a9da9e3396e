#!/usr/bin/env bash
# The host-interface fuzzer: builds it with clang (ASan + UBSan + libFuzzer)
# and runs it from the seed corpus in tests/fuzz/corpus.
#   bash scripts/fuzz.sh                 a bounded run of 60 s (the test command's)
#   bash scripts/fuzz.sh --runs 10000000 a long run of that many executions
# Findings are written to build/fuzz/findings/ and end the run non-zero.
set -euo pipefail
cd "$(dirname "$0")/.."
limit=(-max_total_time=60)
if [ "${1:-}" = "--runs" ]; then limit=(-runs="${2:?--runs needs a count}"); fi

CXX=clang++ cmake -S . -B build/fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZEL_FUZZ=ON \
  -DZEL_SANITIZE=address,undefined -DZEL_BUILD_TESTS=OFF -DZEL_BUILD_BENCH=OFF >/dev/null
cmake --build build/fuzz -j"$(nproc)" --target zel_host_fuzzer
work=build/fuzz/corpus
mkdir -p "$work" build/fuzz/findings
build/fuzz/tests/fuzz/zel_host_fuzzer "${limit[@]}" -max_len=4096 -print_final_stats=1 \
  -artifact_prefix=build/fuzz/findings/ "$work" tests/fuzz/corpus
