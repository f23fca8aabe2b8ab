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

# A display for the Windows tests; the end-to-end tests make their own.
exec {display}< <(exec Xvfb -displayfd 1 -screen 0 1400x1100x24 -nolisten tcp 2>/dev/null)
xvfb=$!
trap 'kill "$xvfb" 2>/dev/null || true; WINEPREFIX="$WINEPREFIX" /usr/lib/wine/wineserver64 -k 2>/dev/null || true' EXIT
read -r -t 30 number <&"$display"
export DISPLAY=":$number"

printf 'subdirs("native" "windows")\n' > build/CTestTestfile.cmake
ctest --test-dir build --parallel 2 --output-on-failure ${1:+-R "$1"}
