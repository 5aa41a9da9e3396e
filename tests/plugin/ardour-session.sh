#!/usr/bin/env bash
# Runs the encoder inside a real, headless Ardour 7 session and checks what
# comes out of it against the recorded input and against zelrender.
#
#   1. Ardour's scanner files the module in a private plug-in cache.
#   2. ardour7-new_session makes a session with a 16-channel master bus.
#   3. ardour-session.lua (in ardour7-lua, dummy backend) records a sine
#      sweep on a mono track with 16 outputs, inserts the encoder, checks its
#      pins and automatable parameters, and bounces the track through it with
#      the source at 90 degrees, compensation off and at 2.25 m; then saves.
#   4. A second ardour7-lua run reloads the saved session and bounces again.
#   5. zelrender renders the recorded take with the same settings, and
#      ardour-session.lua compares everything.
#
# usage: ardour-session.sh MODULE ZELRENDER WORKDIR
# Ardour's tools are expected where Debian's 'ardour' package puts them.
set -euo pipefail

if [ $# -ne 3 ]; then
  echo "usage: $0 MODULE ZELRENDER WORKDIR" >&2
  exit 2
fi
module=$1
zelrender=$2
work=$3
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
[ -x "$zelrender" ] || fail "zelrender $zelrender not found"
[ -f "$lua_script" ] || fail "$lua_script not found"

rm -rf "$work"
mkdir -p "$work/home" "$work/config" "$work/cache" "$work/data" "$work/lxvst" "$work/logs"

# Ardour reads and writes its configuration, plug-in cache and scan log
# under these; private ones keep the user's own Ardour setup out of it both
# ways. LXVST_PATH is honoured because the private configuration has no
# saved plug-in path.
export HOME="$work/home"
export XDG_CONFIG_HOME="$work/config"
export XDG_CACHE_HOME="$work/cache"
export XDG_DATA_HOME="$work/data"
export LXVST_PATH="$work/lxvst"
unset VST_PATH LXVST_PLUGINS || true

# What a step printed, less the interpreter's call-slot traces and two
# harmless notices: the master bus's outputs 9-16 find no playback port of
# the dummy backend to connect to, and there is no General MIDI synth.
show() {
  grep -a -v -e '^lua/' -e 'Invalid Destination port' -e 'Falling back to Reasonable Synth' \
    "$work/logs/$1.out" || true
}

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
    if [ $status -eq 124 ]; then
      fail "$name did not finish within $limit s"
    fi
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

run new_session 60 "$new_session" -m 16 -s 48000 "$work/session" zel
[ -f "$work/session/zel.ardour" ] || fail "ardour7-new_session made no session file"

manifest="$work/manifest.txt"
run record 120 "$ardour_lua" "$lua_script" record "$work/session" zel "$manifest"
show record
run reload 120 "$ardour_lua" "$lua_script" reload "$work/session" zel "$manifest"
show reload

take=$(sed -n 's/^take //p' "$manifest")
[ -f "$take" ] || fail "the recorded take '$take' is missing"
run render_off 60 "$zelrender" -q --plugin "$module" --azimuth 90 "$take" -o "$work/ref-off.wav"
run render_nfc 60 "$zelrender" -q --plugin "$module" --azimuth 90 --nfc 2.25 "$take" -o "$work/ref-nfc.wav"

run check 120 "$ardour_lua" "$lua_script" check "$manifest" "$work/ref-off.wav" "$work/ref-nfc.wav"
show check
grep -q '^PASS$' "$work/logs/check.out" || fail "the check ended without passing"
