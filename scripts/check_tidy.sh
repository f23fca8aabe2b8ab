#!/usr/bin/env bash
# Static analysis of the product: check_tidy.sh core | windows [deep]
# The path-sensitive checks give up early on a long function, which halves the time; not so when it is deep.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
mapfile -t product < <(git ls-files '*.cpp' | grep -Ev '^(practice|fuzz|bench|tests)/|/strings/')
if [ "$1" = windows ]; then
    # clang knows the options of its own preset; nothing is built.
    cmake --preset clang >/dev/null
    build=build/clang
    mapfile -t checked < <(printf '%s\n' "${product[@]}" | grep '_win\.cpp$')
else
    build=build/native
    mapfile -t checked < <(printf '%s\n' "${product[@]}" | grep -v '_win\.cpp$')
fi
depth=(); [ "${2:-}" = deep ] || depth=(--extra-arg={-Xclang,-analyzer-config,-Xclang,max-nodes=50000})
printf '%s\n' "${checked[@]}" | xargs -n 4 clang-tidy -p "$build" --quiet "${depth[@]}" --extra-arg=-Wno-unknown-warning-option 2>/dev/null
