#!/usr/bin/env bash
# Draws mirelo.ico from the two drawings beside it. The result is checked in, so that a build needs
# neither rsvg-convert (librsvg2-bin) nor icotool (icoutils); run this after a change to a drawing.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
frames=$(mktemp -d)
trap 'rm -rf "$frames"' EXIT

for size in 16 20 24; do
    rsvg-convert --export-id "px$size" mirelo-small.svg --output "$frames/$size.png"
done
for size in 32 40 48 64 128 256; do
    rsvg-convert --width "$size" --height "$size" mirelo.svg --output "$frames/$size.png"
done

# The two large frames stay PNG: as bitmaps they would take 330 KiB.
bitmaps=()
for size in 16 20 24 32 40 48 64; do
    bitmaps+=("$frames/$size.png")
done
icotool --create --output "$frames/mirelo.ico" "${bitmaps[@]}" \
    --raw "$frames/128.png" --raw "$frames/256.png"
mv "$frames/mirelo.ico" mirelo.ico
