#!/usr/bin/env bash
# The module must export exactly one symbol, its entry point.
# usage: check-exports.sh NM MODULE
set -euo pipefail
symbols=$("$1" -D --defined-only "$2" | awk '{print $NF}')
echo "$symbols"
if [ "$symbols" != "VSTPluginMain" ]; then
  echo "FAIL: exported symbols differ from VSTPluginMain alone" >&2
  exit 1
fi
