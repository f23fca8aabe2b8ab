#!/usr/bin/env bash
# The one test command: installs what is missing, builds everything, checks the style, and runs all tests
# natively under the sanitizers and under Wine. Ends with ctest's closing lines.
#
#   ./test.sh              everything
#   ./test.sh REGEX        only the tests whose ctest name matches
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
scripts/setup.sh
scripts/build.sh native windows
echo "-- making the Wine prefix ready"
source scripts/wine_env.sh

# For the Windows tests; the end-to-end tests make their own.
source scripts/display.sh

printf 'subdirs("native" "windows")\n' > build/CTestTestfile.cmake
ctest --test-dir build --parallel 3 --output-on-failure ${1:+-R "$1"}
