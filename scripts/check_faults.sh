#!/usr/bin/env bash
# Every planted fault must be noticed by the tests: the proof that they are strong enough. check_faults.py tells how.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/setup.sh
source scripts/wine_env.sh
source scripts/display.sh
python3 scripts/check_faults.py "$@"
