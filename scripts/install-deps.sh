#!/usr/bin/env bash
# Installs the Debian packages this project needs, and only those that are missing.
# Works as root, or through sudo. Safe to run again: it does nothing when all is there.
set -euo pipefail

packages=(
  # toolchain
  g++ cmake make pkg-config git clang-format
  # the host-interface fuzzer: clang with its sanitizer and libFuzzer runtimes
  clang libclang-rt-14-dev
  # tests and benchmarks
  libgtest-dev libgmock-dev libbenchmark-dev
  # the benchmark's peer encoder, and its table (scripts/bench.sh)
  iem-plugin-suite-vst python3
  # editor platform layer (XCB + Cairo) and its X tests
  libxcb1-dev libcairo2-dev libxcb-xtest0-dev xvfb xauth
  # editor images, drawn at build time with Cairo in the DejaVu fonts
  libfontconfig-dev fonts-dejavu-core
  # command-line renderer: audio files, the headphone preview's decoder and
  # HRTF sets, the path pictures
  libsndfile1-dev libspatialaudio-dev libmysofa-dev libmysofa1
  # the LV2 shell, and the LV2 host tools its tests use: a real host for its
  # editor (jalv on a dummy JACK server), window lookup and XTest input
  lv2-dev lilv-utils sndfile-programs jalv jackd2 x11-utils xdotool
  # real host used by the host-compatibility test
  ardour
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "Installing missing packages: ${missing[*]}" >&2
sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "need root or sudo to install: ${missing[*]}" >&2; exit 1; }
  sudo_cmd=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
