#!/usr/bin/env bash
# The long checks, for a release; ./test.sh has the others.
#
#   scripts/check_all.sh [SECONDS]    every fuzzer goes on from its corpus for so long, 30 without saying
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
seconds=${1:-30}
scripts/setup.sh

echo "-- the second compiler, whose warnings are errors too"
scripts/build.sh clang
scripts/check_program.sh build/clang/mirelo.exe

scripts/build.sh fuzz
found=$(mktemp -d)
trap 'rm -rf "$found"' EXIT
for corpus in fuzz/*/corpus/*; do
    folder=${corpus%/corpus/*}
    name=${corpus##*/}
    echo "-- fuzzing $name for $seconds s"
    mkdir "$found/$name"
    options=(-max_total_time="$seconds" -artifact_prefix="build/fuzz/found-$name-")
    [ -e "$folder/$name.dict" ] && options+=(-dict="$folder/$name.dict")
    "build/fuzz/$folder/${name}_fuzz" "${options[@]}" "$found/$name" "$corpus" \
        >"build/fuzz/$name.log" 2>&1 || { tail -n 40 "build/fuzz/$name.log"; exit 1; }
done

echo "-- the static analysis, source by source"
scripts/check_tidy.sh deep

echo "-- every planted fault"
scripts/check_faults.sh

echo "-- a whole day in one process"
MIRELO_ENDURANCE=100 ./test.sh '^endurance$'

scripts/check_package.sh
