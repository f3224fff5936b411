#!/bin/bash
# Configures and builds one preset:  tools/build.sh PRESET [target...]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
preset=${1:?usage: $0 PRESET [target...]}
shift

directory=build/$preset
if [ -e "$directory" ] && [ ! -w "$directory" ]; then
    echo "$0: $PWD/$directory belongs to another user; remove it or take it over" >&2
    exit 1
fi
mkdir -p "$directory"
configured=$directory/configure.log
if ! cmake --preset "$preset" >"$configured" 2>&1; then
    cat "$configured" >&2
    echo "$0: cannot configure the preset $preset" >&2
    exit 1
fi
cmake --build --preset "$preset" ${1:+--target "$@"}
