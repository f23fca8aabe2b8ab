#!/usr/bin/env bash
# Two builds of the newest commit, in folders of different names and depths, give the same bytes: the
# program's, the package's and the manifests'. Costs two builds without a cache.
set -euo pipefail
repository=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export CCACHE_DISABLE=1

clones=("$folder/a" "$folder/another place/deeper/with a longer name")
for clone in "${clones[@]}"; do
    git clone --quiet "$repository" "$clone"
    echo "-- packaging in $clone"
    "$clone/scripts/package.sh"
done
cmp "${clones[0]}/build/release/mirelo.exe" "${clones[1]}/build/release/mirelo.exe"
diff -r "${clones[0]}/build/package" "${clones[1]}/build/package"
(cd "${clones[0]}/build/package" && sha256sum --check --quiet ./*.sha256 && unzip -q ./*.zip -d unpacked &&
    cd unpacked && sha256sum --check --quiet checksums.txt)
echo "-- identical:"
cat "${clones[0]}/build/package/"*.sha256
