#!/usr/bin/env bash
# Static analysis of the product: check_tidy.sh core | windows [deep]
# The path-sensitive checks give up early on a long function, which halves the time; not so when it is deep.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
unless=(-v); [ "$1" = core ] || unless=()
mapfile -t checked < <(git ls-files '*.cpp' | grep -Ev '^(practice|fuzz|bench|tests)/|/strings/' |
                       grep "${unless[@]}" '_win\.cpp$')
# clang knows the options of its own preset; nothing is built. Two at once make it in a folder each.
cmake --preset clang -B "build/tidy-$1" >/dev/null
depth=(); [ "${2:-}" = deep ] || depth=(--extra-arg={-Xclang,-analyzer-config,-Xclang,max-nodes=50000})
printf '%s\n' "${checked[@]}" | xargs -n 4 clang-tidy -p "build/tidy-$1" --quiet "${depth[@]}" --extra-arg=-Wno-unknown-warning-option 2>/dev/null
