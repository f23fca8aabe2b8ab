#!/usr/bin/env bash
# Formatting, the order of the folders, and the versions that belong together.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
mapfile -t files < <(git ls-files '*.cpp' '*.h')
clang-format --dry-run --Werror "${files[@]}"
python3 scripts/check_layers.py
scripts/check_versions.sh
