#!/usr/bin/env bash
# Builds the plug-in benchmark (release) and runs it once, all cases interleaved
# at random and repeated, then prints the medians in nanoseconds per sample
# frame and the ratios: fast path against the scalar path and against the peer,
# automation against static, silence against signal.
#   scripts/bench.sh [repetitions, default 7]
# BUILD_DIR (default build/bench) names the build folder. Run it on an
# otherwise quiet machine.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${BUILD_DIR:-build/bench}
reps=${1:-7}
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DZEL_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" -j2 --target zel_bench_plugin >/dev/null
json=$(mktemp)
trap 'rm -f "$json"' EXIT
"$build/bench/zel_bench_plugin" --benchmark_repetitions="$reps" \
  --benchmark_enable_random_interleaving=true --benchmark_min_time=0.05 \
  --benchmark_report_aggregates_only=true --benchmark_out="$json" \
  --benchmark_out_format=json >/dev/null
echo "CPU: $(lscpu | sed -n 's/^Model name: *//p'), $reps repetitions, medians"
python3 - "$json" <<'EOF'
import json, sys
runs = json.load(open(sys.argv[1]))["benchmarks"]
ns = {}
for r in runs:
    if r.get("aggregate_name") == "median":
        mode, variant, load, block = r["run_name"].split("/")
        ns[mode, variant, load, int(block)] = r["per_sample"] * 1e9
blocks = sorted({k[3] for k in ns})
def f(v): return f"{v:6.2f}"
print("\nns per sample frame (48 kHz; off / far / near)")
print("| block | load | fast off | far | near | scalar off | far | near | peer | floor |")
print("|---|---|---|---|---|---|---|---|---|---|")
for b in blocks:
    for load in ("static", "auto", "silence"):
        row = [ns[m, v, load, b] for v in ("fast", "scalar") for m in ("off", "far", "near")]
        row += [ns["off", "peer", load, b]]
        fl = f(ns["any", "floor", "static", b]) if load == "static" else ""
        print(f"| {b} | {load} | " + " | ".join(f(x) for x in row) + f" | {fl} |")
print("\nratios (targets: vs scalar near, far <= 0.15, off <= 0.35; vs peer near <= 1.0 at 64+,")
print("off <= 0.5; automation within 1.3x of these; silence <= 1.1x signal)")
print("| block | load | fast/scalar off | far | near | fast/peer off | near | silence/static off | far | near |")
print("|---|---|---|---|---|---|---|---|---|---|")
for b in blocks:
    for load in ("static", "auto", "silence"):
        r = [ns[m, "fast", load, b] / ns[m, "scalar", load, b] for m in ("off", "far", "near")]
        r += [ns[m, "fast", load, b] / ns["off", "peer", load, b] for m in ("off", "near")]
        if load == "silence":
            r += [ns[m, "fast", "silence", b] / ns[m, "fast", "static", b] for m in ("off", "far", "near")]
        cells = " | ".join(f"{x:.3f}" for x in r) + (" | | |" if load != "silence" else "")
        print(f"| {b} | {load} | {cells} |")
EOF
