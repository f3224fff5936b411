#!/bin/bash
# Installs what is missing, builds Orvo optimised and starts it. Without a display it drives the
# program on a virtual one: opens the simulated camera, draws, measures and takes a picture, and
# leaves screenshots and picture in a folder. Needs root or sudo only while packages are missing.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
program=build/release/src/orvo

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    tools/packages.sh install build
    tools/build.sh release orvo
    exec "$program" "$@"
fi

tools/packages.sh install build desktop
tools/build.sh release orvo
output=$PWD/build/unattended/$(date +%Y%m%d-%H%M%S)
mkdir -p "$output"
echo "No display: Orvo runs unattended on a virtual one."
if tests/endtoend/run.sh --program "$program" --output "$output"; then
    echo "Screenshots and pictures: $output"
else
    echo "$0: the unattended run failed; what it left: $output" >&2
    exit 1
fi
