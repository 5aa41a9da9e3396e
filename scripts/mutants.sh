#!/usr/bin/env bash
# Seeded faults: applies each fault of scripts/mutants.txt, one at a time, to a
# scratch copy of the committed tree, rebuilds it, runs the release suite and
# says whether the suite caught the fault. Not part of the test command: it
# takes a while (an incremental build and a ctest run per fault).
#
#   bash scripts/mutants.sh [REPORT]      REPORT: where the table goes (default: stdout)
#   ZEL_MUTANTS='name1 name2' bash scripts/mutants.sh    only these faults
set -euo pipefail
cd "$(dirname "$0")/.."
report=${1:-/dev/stdout}
jobs=$(nproc)
# The scratch copy and its build stay between runs (build/ is not tracked), so
# that a second run rebuilds only what changed. ZEL_MUTANTS_DIR moves them.
scratch=${ZEL_MUTANTS_DIR:-$PWD/build/mutants}
tree=$scratch/tree
stage=$scratch/stage
mkdir -p "$tree"
rm -rf "$stage" && mkdir -p "$stage"
git archive HEAD | tar -x -C "$stage"
# Only files whose content changed are copied, so that their times, and with
# them the incremental build, stay as they were for the rest.
(cd "$stage" && find . -type f) | while read -r file; do
  cmp -s "$stage/$file" "$tree/$file" || { mkdir -p "$(dirname "$tree/$file")" && cp "$stage/$file" "$tree/$file"; }
done
(cd "$tree" && find . -path ./build -prune -o -type f -print) | while read -r file; do
  [[ -e $stage/$file ]] || rm -f "$tree/$file"
done

# Neither reads the list of faults that feeds the loop below (some tests start
# hosts that read their standard input).
build() { cmake --build "$tree/build" -j"$jobs" >"$scratch/build.log" 2>&1 </dev/null; }
suite() { (cd "$tree/build" && ctest -j"$jobs" --timeout 300 >"$scratch/ctest.log" 2>&1 </dev/null); }

# A compiler cache, where there is one, makes the rebuilds of a second run short.
if [ -z "${CMAKE_CXX_COMPILER_LAUNCHER:-}" ] && command -v ccache >/dev/null; then
  export CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi
cmake -S "$tree" -B "$tree/build" -DCMAKE_BUILD_TYPE=Release -DZEL_BUILD_BENCH=OFF >/dev/null
build || { echo "the unmodified tree does not build (see $scratch/build.log)" >&2; exit 1; }
suite || { echo "the unmodified tree fails its own suite (see $scratch/ctest.log)" >&2; exit 1; }

# Replaces the first occurrence of OLD by NEW in FILE, literally; fails if absent.
apply() {
  OLD=$2 NEW=$3 perl -0777 -i -pe '
    BEGIN { for ($ENV{OLD}, $ENV{NEW}) { s/\\n/\n/g; s/\\t/\t/g } }
    my $i = index($_, $ENV{OLD}); if ($i < 0) { exit 3 } substr($_, $i, length $ENV{OLD}) = $ENV{NEW};
  ' "$1"
}

caught=0 missed=0 gone=0
printf '%-24s %s\n' fault result >"$report"
while IFS=$'\t' read -r name file old new; do
  [[ -z $name || $name == \#* ]] && continue
  if [[ -n ${ZEL_MUTANTS:-} && " $ZEL_MUTANTS " != *" $name "* ]]; then continue; fi
  cp "$tree/$file" "$scratch/original"
  if ! apply "$tree/$file" "$old" "$new" 2>/dev/null; then
    result="gone (text not found in $file)"
    gone=$((gone + 1))
  elif ! build; then
    result="caught (does not build)"
    caught=$((caught + 1))
  elif suite; then
    result="MISSED"
    missed=$((missed + 1))
  else
    result="caught: $(grep -m3 -oE '[0-9]+ - [^ ]+' "$scratch/ctest.log" | sed 's/^[0-9]* - //' | paste -sd' ')"
    caught=$((caught + 1))
  fi
  cp "$scratch/original" "$tree/$file"
  printf '%-24s %s\n' "$name" "$result" >>"$report"
  echo "$name: $result" >&2
done <scripts/mutants.txt
build
printf '\n%d caught, %d missed, %d gone\n' "$caught" "$missed" "$gone" >>"$report"
[[ $missed -eq 0 && $gone -eq 0 ]]
