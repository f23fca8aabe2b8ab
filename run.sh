#!/usr/bin/env bash
# The one run command: installs what is missing, builds, and opens Mirelo beside a practice CorelDRAW that
# hangs in a plug-in. Where there is no display it plays the job by itself on a virtual one.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
scripts/setup.sh
scripts/build.sh windows
echo "-- making the Wine prefix ready"
source scripts/wine_env.sh

if [ -z "${DISPLAY:-}" ]; then
    exec /usr/bin/python3 scripts/play.py
fi

"$MIRELO_WINE" build/windows/practice/CorelDRW.exe plugin-sleep &
practice=$!
trap 'kill "$practice" 2>/dev/null || true' EXIT
echo "-- Mirelo opens beside a practice CorelDRAW that hangs: press Refresh, then Capture Now"
"$MIRELO_WINE" build/windows/mirelo.exe
