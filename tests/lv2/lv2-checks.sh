#!/usr/bin/env bash
# The LV2 bundle through Debian's LV2 host tools: listed, described with its
# ports, ranges and presets, exporting only its entry point, and rendering a
# file bit for bit as the VST 2.4 module does through zelrender.
# Arguments: bundle directory, zelrender, the VST module, a scratch directory.
set -euo pipefail
bundle=$1 zelrender=$2 vst=$3 scratch=$4
uri=urn:zelworks:orvalis-xy3-3d
export LV2_PATH
LV2_PATH=$(dirname "$bundle")
# A folder of this run's own: two runs at once must not share their files.
mkdir -p "$(dirname "$scratch")"
scratch=$(mktemp -d "$scratch.XXXXXX")
trap 'rm -rf "$scratch"' EXIT
fail() { echo "FAIL: $*" >&2; exit 1; }

lv2ls | grep -qx "$uri" || fail "lv2ls does not list $uri"
info=$(lv2info "$uri" 2>/dev/null)
count() { grep -c -- "$1" <<<"$info" || true; }
[ "$(count 'Port [0-9]*:')" = 31 ] || fail "expected 31 ports"
ports() { awk -v RS= -v a="$1" -v b="$2" '$0 ~ a && $0 ~ b { n++ } END { print n + 0 }' <<<"$info"; }
[ "$(ports AudioPort InputPort)" = 1 ] || fail "expected 1 audio input"
[ "$(ports AudioPort OutputPort)" = 16 ] || fail "expected 16 audio outputs"
[ "$(ports ControlPort InputPort)" = 7 ] || fail "expected 7 control inputs"
[ "$(count 'Prog [0-9]*$')" = 16 ] || fail "expected the 16 programs as presets"
for range in 'Minimum: *-90.0' 'Maximum: *360.0' 'Minimum: *0.5' 'Minimum: *-4.0'; do
  grep -q -- "$range" <<<"$info" || fail "no control with $range"
done
exports() { nm -D --defined-only "$bundle/$1" | awk '$2 != "w" {print $3}'; }
[ "$(exports ZelAmbiEnc.so)" = lv2_descriptor ] || fail "the plug-in exports more than its entry point"
[ "$(exports ZelAmbiEncUi.so)" = lv2ui_descriptor ] || fail "the UI exports more than its entry point"

# Same position given to each shell in its own terms; out-of-range control
# values are clamped to the ends, as a host would see them.
compare() {
  local name=$1 controls=$2 options=$3
  # shellcheck disable=SC2086
  lv2apply -i "$scratch/in.wav" -o "$scratch/$name-lv2.wav" $controls "$uri" ||
    fail "$name: lv2apply failed"
  # shellcheck disable=SC2086
  "$zelrender" --plugin "$vst" -q "$scratch/in.wav" -o "$scratch/$name-vst.wav" $options
  sndfile-cmp "$scratch/$name-lv2.wav" "$scratch/$name-vst.wav" || fail "$name: renders differ"
}
# The demo's first channel (W) is the demo's signal itself: a mono float input.
"$zelrender" --plugin "$vst" -q -o "$scratch/demo.wav"
(cd "$scratch" && sndfile-deinterleave demo.wav >/dev/null)
mv "$scratch/demo_00.wav" "$scratch/in.wav"
compare polar "-c azimuth 135 -c elevation -20 -c distance 1.2 -c compensation 1.5" \
  "--azimuth 135 --elevation -20 --distance 1.2 --nfc 1.5"
compare cartesian "-c x 1 -c y -2 -c z 0.5 -c compensation 3" "--x 1 --y -2 --z 0.5 --nfc 3"
compare clamped "-c azimuth 1000 -c elevation -500 -c compensation 0.1" \
  "--azimuth 360 --elevation -90 --nfc 0.5"
echo "LV2 bundle: listed, 31 ports, 16 presets, renders equal to the VST 2.4 module"
