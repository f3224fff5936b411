#!/bin/sh
# Lays all icons of a build side by side, on the dark and on a light surface, to look at them.
# Usage: tools/make-icon-sheet.sh <build directory> <sheet.png>    Needs ImageMagick.
set -eu

if [ $# -ne 2 ]; then
    echo "usage: $0 <build directory> <sheet.png>" >&2
    exit 2
fi
icons="$1/resources/drawn/icons/light-blue"
sheet="$2"
if [ ! -d "$icons/16x16" ]; then
    echo "$0: no icons in $icons: build the target orvo_resource_data first" >&2
    exit 1
fi
parts=$(mktemp -d)
trap 'rm -rf "$parts"' EXIT

# File names hold no blanks, so that a list of them may be split.
lay_out() { # <surface> <size>
    montage $(find "$icons/${2}x${2}" -name '*.png' | sort) -tile 17x -geometry +6+6 \
        -background "$1" "$parts/$2.png"
}

for surface in '#1E2B3D' '#F0F0F0'; do
    for size in 16 24 48; do
        lay_out "$surface" "$size"
    done
    convert "$parts/16.png" "$parts/24.png" "$parts/48.png" -background "$surface" \
        -append "$parts/sheet-$surface.png"
done
convert "$parts/sheet-#1E2B3D.png" "$parts/sheet-#F0F0F0.png" -append "$sheet"
