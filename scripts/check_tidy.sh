#!/usr/bin/env bash
# Static analysis of the product: check_tidy.sh [deep]
# Several sources are looked at together, so that their common headers are looked at once, and the path-sensitive
# checks give up early on a long function. When it is deep, neither.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# clang knows the options of its own preset; nothing is built.
if [ "${1:-}" = deep ]; then
    cmake --preset clang >/dev/null
    options=(-p build/clang)
    mapfile -t sources < <(git ls-files '*.cpp' | grep -Ev '^(practice|fuzz|bench|tests)/|/strings/')
else
    cmake --preset clang -B build/tidy -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=6 >/dev/null
    options=(-p build/tidy --checks=-bugprone-suspicious-include
             --extra-arg={-Xclang,-analyzer-opt-analyze-headers,-Xclang,-analyzer-config,-Xclang,max-nodes=50000})
    mapfile -t sources < <(find "$PWD/build/tidy" -name 'unity_*.cxx')
fi
printf '%s\n' "${sources[@]}" | nice xargs -P "$(nproc)" -n 1 \
    clang-tidy "${options[@]}" --quiet --extra-arg=-Wno-unknown-warning-option 2>/dev/null
