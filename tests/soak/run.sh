#!/bin/bash
# Soaks all sources at once for so many minutes and prints their figures; the preset dev must be
# built. Fails when one of them does.
#
#   tests/soak/run.sh MINUTES
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
export ORVO_SOAK_MINUTES=${1:?usage: $0 MINUTES} QT_QPA_PLATFORM=offscreen
support=tests/support
tests=build/dev/tests/soak

# In a network of its own, since it has a box in it.
soak() {
    "$support/isolated.sh" "$support/private-network.sh" "$tests/tst_$1Soak" >"$tests/$1.log" 2>&1
}

declare -A running
for source in Simulated Stream V4l2 Box Window; do
    soak "$source" &
    running[$source]=$!
done
status=0
for source in "${!running[@]}"; do
    wait "${running[$source]}" || status=1
    grep -vE '^(QDEBUG|QINFO|QWARN)' "$tests/$source.log"
done
exit "$status"
