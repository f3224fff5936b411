#!/bin/bash
# Builds the benchmarks optimised, runs them on a virtual X server and prints their figures as ratios
# to the baseline of the same run, as Markdown. Arguments go to the benchmarks.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/build.sh bench >/dev/null
results=$(mktemp -d)
trap 'rm -rf "$results"' EXIT
# Two cores, however many the machine has.
for name in bench_canvas bench_tools bench_camera bench_capture bench_recording; do
    ORVO_SCREEN=3400x1000x24 QT_QPA_PLATFORM=xcb QT_LOGGING_RULES='*.debug=false;*.info=false' \
        taskset -c 0,1 tests/support/isolated.sh tests/support/with-display.sh "build/bench/benchmarks/$name" \
        --benchmark_out="$results/$name.json" --benchmark_out_format=json \
        --benchmark_repetitions=3 --benchmark_report_aggregates_only=true "$@" >"$results/$name.log" 2>&1 ||
        { cat "$results/$name.log" >&2; exit 1; }
done
python3 benchmarks/table.py "$results"
