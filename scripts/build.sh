#!/usr/bin/env bash
# Configures and builds presets: build.sh PRESET...
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
for preset in "$@"; do
    echo "-- building $preset"
    cmake --preset "$preset" -DCMAKE_CXX_COMPILER_LAUNCHER=ccache >/dev/null
    cmake --build --preset "$preset" -- --quiet
done
