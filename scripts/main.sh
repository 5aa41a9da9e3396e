#!/usr/bin/env bash
# Main job: install what is missing, build (Release), install the plug-in where
# Linux hosts look for it, and render the built-in demo with zelrender.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh

build=build/main
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DZEL_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" -j"$(nproc)"

vst_dir="${HOME:?HOME is not set}/.vst"
mkdir -p "$vst_dir" out
install -m 0755 "$build/ZelAmbiEnc/ZelAmbiEnc.so" "$vst_dir/ZelAmbiEnc.so"
# The LV2 bundle, for hosts that prefer LV2 (they scan ~/.lv2).
lv2_dir="$HOME/.lv2"
mkdir -p "$lv2_dir"
rm -rf "$lv2_dir/ZelAmbiEnc.lv2"
cp -r "$build/lv2-bundles/ZelAmbiEnc.lv2" "$lv2_dir/"

# The demo renders through the installed copy, exactly as a host would load it.
"$build/tools/zelrender" --plugin "$vst_dir/ZelAmbiEnc.so" -o out/demo.wav \
  --binaural out/demo-headphones.wav --plot out/demo.png

cat <<DONE

Plug-in:     $vst_dir/ZelAmbiEnc.so   (VST 2.4: hosts scan ~/.vst)
LV2 plug-in: $lv2_dir/ZelAmbiEnc.lv2   (LV2: hosts scan ~/.lv2; URI urn:zelworks:orvalis-xy3-3d)
Renderer:    $PWD/$build/tools/zelrender   (zelrender --help)
Editor:      $PWD/$build/tools/zeledit   (opens the plug-in's window without a DAW)
Demo render: $PWD/out/demo.wav   (16-channel AmbiX: ACN order, SN3D, 32-bit float, 48 kHz)
Headphones:  $PWD/out/demo-headphones.wav   (the same scene decoded for headphones: listen to it)
Picture:     $PWD/out/demo.png   (the source's path: top view, azimuth, elevation, distance)
Benchmarks:  $PWD/$build/bench/
DONE
