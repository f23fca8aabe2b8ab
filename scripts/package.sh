#!/usr/bin/env bash
# Makes the release: build/package/mirelo-VERSION-windows-x64.zip, its checksum and the winget manifests.
# Arguments go to cmake: the maker's settings, for example -DMIRELO_WEBSITE=https://...
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# A folder of its own: no cache, no tests, no setting left over from an earlier build.
rm -rf build/release build/package
cmake --preset windows -B build/release -DMIRELO_TESTS=OFF "$@" >/dev/null
cmake --build build/release --target mirelo -- --quiet
scripts/check_program.sh build/release/mirelo.exe
# The place for a certificate: a command that signs the program whose path it is given.
[ -z "${MIRELO_SIGN:-}" ] || $MIRELO_SIGN build/release/mirelo.exe
# The files in the zip carry the commit's time.
python3 -B packaging/pack.py build/release build/package "${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct)}"
