#!/usr/bin/env bash
# Main job: install what is missing, build, and run the encoder benchmark.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
cmake -S . -B build/main -DCMAKE_BUILD_TYPE=Release -DZEL_BUILD_TESTS=OFF >/dev/null
cmake --build build/main -j"$(nproc)"
./build/main/bench/zel_bench
