#!/usr/bin/env bash
# Runs the encoder inside a real, headless Ardour 7 session and checks what
# comes out of it against the recorded input and against zelrender:
#   1. Ardour's scanner files the module in a private plug-in cache, whose
#      entry is checked (name, vendor, ID, pins, processing);
#   2. ardour7-new_session makes a session with a 16-channel master bus;
#   3. ardour-session.lua records, inserts the encoder and bounces through it,
#      then reloads the saved session and bounces again (see there);
#   4. zelrender renders the recorded take with the same settings, and
#      ardour-session.lua compares everything.
# The LV2 bundle beside MODULE's directory is found through LV2_PATH.
# usage: ardour-session.sh MODULE LV2_BUNDLE ZELRENDER WORKDIR
# Ardour's tools are expected where Debian's 'ardour' package puts them; a
# missing Ardour fails the test, never skips it.
set -euo pipefail

[ $# -eq 4 ] || { echo "usage: $0 MODULE LV2_BUNDLE ZELRENDER WORKDIR" >&2; exit 2; }
module=$1
bundle=$2
zelrender=$3
work=$4
lua_script=$(cd "$(dirname "$0")" && pwd)/ardour-session.lua

ardour_lua=/usr/bin/ardour7-lua
new_session=/usr/bin/ardour7-new_session
scanner=/usr/lib/ardour7/ardour-vst-scanner

fail() {
  echo "FAIL: $*" >&2
  exit 1
}

for tool in "$ardour_lua" "$new_session" "$scanner"; do
  [ -x "$tool" ] || fail "Ardour's $tool is missing; install the 'ardour' package (scripts/install-deps.sh)"
done
[ -f "$module" ] || fail "plug-in module $module not found"
[ -f "$bundle/manifest.ttl" ] || fail "LV2 bundle $bundle not found"
[ -x "$zelrender" ] || fail "zelrender $zelrender not found"

# A folder of this run's own, so that two runs at once (two ctest runs in
# one build folder on a busy machine) never share a session or a cache.
mkdir -p "$(dirname "$work")"
work=$(mktemp -d "$work.XXXXXX")
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/home" "$work/config" "$work/cache" "$work/data" "$work/lxvst" "$work/logs"

# Private configuration, cache and data keep the user's own Ardour setup out
# of it both ways; LXVST_PATH counts as the private configuration has no
# saved plug-in path.
export HOME="$work/home" XDG_CONFIG_HOME="$work/config" XDG_CACHE_HOME="$work/cache" \
  XDG_DATA_HOME="$work/data" LXVST_PATH="$work/lxvst" LV2_PATH
LV2_PATH=$(dirname "$bundle")
unset VST_PATH LXVST_PLUGINS || true

# run NAME TIMEOUT COMMAND...: runs one step with its output in logs/NAME.*;
# a failing step shows its log and fails the test.
run() {
  local name=$1 limit=$2
  shift 2
  local status=0
  timeout "$limit" "$@" >"$work/logs/$name.out" 2>"$work/logs/$name.err" || status=$?
  if [ $status -ne 0 ]; then
    echo "---- $name: stdout" >&2
    tail -n 60 "$work/logs/$name.out" >&2
    echo "---- $name: stderr" >&2
    tail -n 60 "$work/logs/$name.err" >&2
    [ $status -ne 124 ] || fail "$name did not finish within $limit s"
    fail "$name failed with exit status $status"
  fi
}

# Ardour trusts a cache entry only if it is strictly newer than the module,
# compared in whole seconds; a copy scanned within the same second as it was
# made would count as changed and be left out of the session.
plugin="$work/lxvst/ZelAmbiEnc.so"
cp "$module" "$plugin"
touch -d '1 minute ago' "$plugin"

run scan 60 env LD_LIBRARY_PATH=/usr/lib/ardour7 "$scanner" -f "$plugin"
cache_file="$work/cache/ardour7/vst/$(printf '%s' "$plugin" | sha1sum | cut -c1-40)-x64.v2i"
[ -f "$cache_file" ] || fail "the scanner wrote no cache entry $cache_file"
for field in 'name="Zelworks Orvalis XY 3 - 3d"' 'creator="ZelWorks"' 'id="1515729784"' \
  'n_inputs="1"' 'n_outputs="16"' 'can_process_replace="1"' 'has_editor="1"' 'is_instrument="0"'; do
  grep -q -- "$field" "$cache_file" || fail "the cache entry lacks $field: $(cat "$cache_file")"
done

run new_session 60 "$new_session" -m 16 -s 48000 "$work/session" zel
[ -f "$work/session/zel.ardour" ] || fail "ardour7-new_session made no session file"

manifest="$work/manifest.txt"
run record 120 "$ardour_lua" "$lua_script" record "$work/session" zel "$manifest"
run reload 120 "$ardour_lua" "$lua_script" reload "$work/session" zel "$manifest"

take=$(sed -n 's/^take //p' "$manifest")
[ -f "$take" ] || fail "the recorded take '$take' is missing"
run render_off 60 "$zelrender" -q --plugin "$module" --azimuth 90 "$take" -o "$work/ref-off.wav"
run render_nfc 60 "$zelrender" -q --plugin "$module" --azimuth 90 --nfc 2.25 "$take" -o "$work/ref-nfc.wav"

run check 120 "$ardour_lua" "$lua_script" check "$manifest" "$work/ref-off.wav" "$work/ref-nfc.wav"
grep -q '^PASS$' "$work/logs/check.out" || fail "the check ended without passing"
