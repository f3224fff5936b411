#!/bin/bash
# Checks the sources: format, layers, sizes, icons, scripts.
#
#   tools/check.sh          everything that is quick; the test suite runs it too
#   tools/check.sh --tidy   also clang-tidy on the sources that differ from main (needs build/dev)
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1
status=0
mapfile -t folders < <(find src libs tests benchmarks packaging tools -maxdepth 0 2>/dev/null)

check() {
    local title=$1
    shift
    if "$@"; then
        echo "ok      $title"
    else
        echo "FAILED  $title"
        status=1
    fi
}

check_format() {
    find "${folders[@]}" \( -name '*.cpp' -o -name '*.h' \) -print0 |
        xargs -0 -r clang-format --dry-run -Werror
}

check_scripts() {
    local script result=0
    while IFS= read -r script; do
        bash -n "$script" || result=1
    done < <(find "${folders[@]}" -name '*.sh'; ls run.sh test.sh .ci/run)
    return "$result"
}

check_tidy() {
    local changed
    changed=$(git diff --name-only --diff-filter=d "$(git merge-base HEAD main)" -- \
        'src/*.cpp' 'libs/*.cpp') || return 1
    [ -z "$changed" ] || xargs clang-tidy -p build/dev --quiet <<<"$changed"
}

check "format" check_format
check "layers" python3 -B tools/check/layers.py
check "style" python3 -B tools/check/style.py
check "icons and resources" python3 -B tools/check/icons.py
check "shell scripts" check_scripts
if [ "${1:-}" = --tidy ]; then
    check "clang-tidy" check_tidy
fi
exit "$status"
