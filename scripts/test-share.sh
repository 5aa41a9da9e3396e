#!/usr/bin/env bash
# The test share: non-blank C++ lines under tests/ against those of the rest of
# the tree outside bench/. The house keeps it between 0.25 and 0.33.
set -euo pipefail
cd "$(dirname "$0")/.."
count() { git ls-files -co --exclude-standard -- "$@" | grep -E '\.(cpp|cc|h|hpp)$' |
  while read -r f; do [ -f "$f" ] && cat "$f"; done | grep -c -v '^[[:space:]]*$' || true; }
tests=$(count tests)
code=$(count . ':!tests' ':!bench')
awk -v t="$tests" -v c="$code" 'BEGIN { printf "tests %d, code %d, share %.3f\n", t, c, t / c }'
