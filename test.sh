#!/bin/bash
# Installs what is missing, builds with warnings as errors and runs the whole test suite. Needs
# root or sudo only while packages are missing. Arguments go to CTest, as in  ./test.sh -R Line
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

tools/packages.sh install build desktop test
tools/build.sh dev
ctest --preset dev -j2 --no-tests=error "$@"
