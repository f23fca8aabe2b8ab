#!/usr/bin/env bash
# Measures what is meant to be fast beside general-purpose peers: installs them, builds, runs everything
# natively and what has a peer there under Wine as well. docs/performance.md explains the figures.
#
#   scripts/bench.sh           takes about ten minutes
#   scripts/bench.sh FOLDER    slims the large document in this folder instead of in memory
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/setup.sh libdeflate-dev nlohmann-json3-dev valgrind
scripts/build.sh bench bench-windows
source scripts/wine_env.sh
native=build/bench/bench
windows=build/bench-windows/bench

folder=$(mktemp -d "${1:-/dev/shm}/mirelo-bench.XXXXXX")
trap 'rm -r "$folder"' EXIT

title() { printf '\n== %s\n' "$*"; }

# Slims a document of 200 MB: run_document PREFIX-OF-PATHS COMMAND...
run_document() {
    local file=$folder/document.cdr root=$1
    shift
    "$@" make "$root$file"
    cp "$file" "$folder/once.cdr"
    "$@" memory "$root$folder/once.cdr"
    rm "$folder"/once.cdr*
    "$@" "$root$file"
}

# Instructions of one run of fixed work: count BENCH WORK CONTENDER...
count() {
    local bench=$1 work=$2 contender
    shift 2
    printf '%-30s' "$bench $work"
    for contender in "$@"; do
        valgrind --tool=callgrind --toggle-collect='countedRun*' --callgrind-out-file=/dev/null \
            "$native/bench_$bench" "$work" "$contender" 2>&1 |
            sed -n "s/.*Collected : \([0-9]*\)/  $contender \1/p" | tr -d '\n'
    done
    echo
}

for bench in inflate crc32 riff cloud; do
    title "$bench, native"
    "$native/bench_$bench"
done
title "a whole document, native, in $folder"
run_document "" "$native/bench_document"
title "instructions, native"
for work in riff-1M/6 palette-1M/6 bmp-4M/6 text-4M/6; do count inflate $work mirelo libdeflate zlib; done
count crc32 1048576 mirelo libdeflate zlib
count riff 1M/views-everywhere mirelo

for bench in inflate crc32; do
    title "$bench, under Wine"
    "$MIRELO_WINE" "$windows/bench_$bench.exe"
done
title "a whole document, under Wine, in $folder"
run_document Z: "$MIRELO_WINE" "$windows/bench_document.exe"

title "what a user feels, under Wine"
scripts/build.sh windows
/usr/bin/python3 bench/felt/felt.py
