#!/usr/bin/env bash
# Formatting and static analysis of the whole project.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
mapfile -t files < <(git ls-files '*.cpp' '*.h' 2>/dev/null || true)
clang-format --dry-run --Werror "${files[@]}"

python3 scripts/check_layers.py
python3 scripts/check_docs.py

# What sees Windows headers is left to the compiler's warnings.
mapfile -t checked < <(git ls-files '*.cpp' | grep -Ev '_win\.cpp$|^(practice|fuzz|bench|tests)/|/strings/')
printf '%s\n' "${checked[@]}" | xargs -P "$(nproc)" -n 4 clang-tidy -p build/native --quiet --extra-arg=-Wno-unknown-warning-option 2>/dev/null
