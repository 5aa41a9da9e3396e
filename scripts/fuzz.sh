#!/usr/bin/env bash
# The host-interface fuzzer: builds it with clang (ASan + UBSan + libFuzzer)
# and runs it from the seed corpus in tests/fuzz/corpus.
#   bash scripts/fuzz.sh                 build, then a bounded run of 60 s (the test command's)
#   bash scripts/fuzz.sh --runs 10000000 build, then a long run of that many executions
#   bash scripts/fuzz.sh --runs 10000000 --jobs 2   the same, shared by two processes
#   bash scripts/fuzz.sh --build-only    build only
#   bash scripts/fuzz.sh --run-only      the bounded run of what was built
# Findings are written to build/fuzz/findings/ and end the run non-zero.
set -euo pipefail
cd "$(dirname "$0")/.."
limit=(-max_total_time=60)
build=yes run=yes jobs=1
case "${1:-}" in
--runs)
  runs=${2:?--runs needs a count}
  [ "${3:-}" = --jobs ] && jobs=${4:?--jobs needs a count}
  limit=(-runs=$((runs / jobs)))
  ;;
--build-only) run=no ;;
--run-only) build=no ;;
"") ;;
*) echo "fuzz.sh: unknown option '$1'" >&2 && exit 2 ;;
esac

if [ $build = yes ]; then
  # Line tables only: enough for the sanitizers' reports, far cheaper to build.
  CXX=clang++ cmake -S . -B build/fuzz -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS=-gline-tables-only \
    -DZEL_FUZZ=ON -DZEL_SANITIZE=address,undefined -DZEL_BUILD_TESTS=OFF -DZEL_BUILD_BENCH=OFF >/dev/null
  cmake --build build/fuzz -j"$(nproc)" --target zel_host_fuzzer
fi
[ $run = yes ] || exit 0
work=build/fuzz/corpus
mkdir -p "$work" build/fuzz/findings
fuzz() {
  build/fuzz/tests/fuzz/zel_host_fuzzer "${limit[@]}" -max_len=4096 -print_final_stats=1 \
    -artifact_prefix=build/fuzz/findings/ "$@" "$work" tests/fuzz/corpus
}
if [ "$jobs" -eq 1 ]; then
  fuzz
  exit
fi
# Several processes on one corpus: each picks up what the others add.
pids=()
for job in $(seq "$jobs"); do
  fuzz -seed="$job" >"build/fuzz/job-$job.log" 2>&1 &
  pids+=($!)
done
status=0
for pid in "${pids[@]}"; do wait "$pid" || status=1; done
grep -H -E '^(Done|stat::number_of_executed_units|stat::average_exec_per_sec)|DONE.*cov:' build/fuzz/job-*.log
exit $status
