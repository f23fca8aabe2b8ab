#!/usr/bin/env bash
# Formatting, the order of the folders, and what belongs together: versions, and what documents name.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
mapfile -t files < <(git ls-files '*.cpp' '*.h')
clang-format --dry-run --Werror "${files[@]}"
python3 scripts/check_layers.py
python3 scripts/check_docs.py
scripts/check_versions.sh
