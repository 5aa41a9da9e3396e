#!/usr/bin/env bash
# Lets Ardour's own plug-in scanner load the module and checks what it filed
# in its cache: the host's view of name, vendor, ID, pins and processing.
# usage: ardour-scan.sh SCANNER MODULE WORKDIR
set -euo pipefail
scanner=$1
module=$2
work=$3

if [ ! -x "$scanner" ]; then
  echo "FAIL: Ardour's scanner $scanner is missing; install the 'ardour' package" >&2
  exit 1
fi

rm -rf "$work"
mkdir -p "$work/cache" "$work/home"
# A private cache and home: the test neither reads nor pollutes the user's.
HOME="$work/home" XDG_CACHE_HOME="$work/cache" LD_LIBRARY_PATH=/usr/lib/ardour7 \
  timeout 60 "$scanner" -v -f "$module"

shopt -s nullglob
files=("$work"/cache/ardour7/vst/*.v2i)
if [ ${#files[@]} -ne 1 ]; then
  echo "FAIL: expected one .v2i cache file, found ${#files[@]}" >&2
  exit 1
fi
cat "${files[0]}"

status=0
expect() {
  if ! grep -q -- "$1" "${files[0]}"; then
    echo "FAIL: cache file lacks $1" >&2
    status=1
  fi
}
expect 'name="Zelworks Orvalis XY 3 - 3d"'
expect 'creator="ZelWorks"'
expect 'id="1515729784"' # 'ZX3x'
expect 'n_inputs="1"'
expect 'n_outputs="16"'
expect 'can_process_replace="1"'
expect 'has_editor="1"'
expect 'is_instrument="0"'
exit $status
