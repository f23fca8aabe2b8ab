#!/usr/bin/env bash
# The numbers that must change together: the release's in CMakeLists.txt, every language's title and the change log;
# the protocol's in the user agent and in submissions, which is not the release's.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
release=$(sed -n 's/^project(mirelo VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
protocol=0.1
failed=0
holds() {
    grep -qF "$2" "$1" || { echo "$1 does not say $2"; failed=1; }
}
for texts in app/strings/*.cpp; do
    holds "$texts" "v${release%.*} - "
done
# ... and none tells another version.
titles=$(cat app/strings/*.cpp | grep -oE '"[^"]*v[0-9]+\.[0-9]+ - ' | grep -cvF "v${release%.*} - " || true)
[ "$titles" -eq 0 ] || { echo "$titles texts tell another version than ${release%.*}"; failed=1; }
holds CHANGELOG.md "## $release"
holds cloud/https_win.cpp "\"Mirelo/$protocol\""
holds cloud/submission.cpp "\"tool_version\":\"$protocol.0\""
exit "$failed"
