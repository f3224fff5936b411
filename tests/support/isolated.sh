#!/bin/sh
# Runs a command with a home, configuration, cache and runtime directory of its own, which are
# removed afterwards, so that no test reads or writes the user's settings.
set -u
home=$(mktemp -d "${TMPDIR:-/tmp}/orvo-test.XXXXXX") || exit 125
trap 'rm -rf "$home"' EXIT
trap 'exit 130' INT TERM
mkdir -p "$home/config" "$home/data" "$home/cache" "$home/Documents"
mkdir -m 700 "$home/run"
export HOME="$home" XDG_CONFIG_HOME="$home/config" XDG_DATA_HOME="$home/data" \
    XDG_CACHE_HOME="$home/cache" XDG_RUNTIME_DIR="$home/run" XDG_CONFIG_DIRS="$home/config" \
    XDG_DATA_DIRS=/usr/local/share:/usr/share
unset XDG_CURRENT_DESKTOP QT_STYLE_OVERRIDE QT_QPA_PLATFORMTHEME
printf 'XDG_DOCUMENTS_DIR="%s/Documents"\n' "$home" > "$home/config/user-dirs.dirs"
"$@"
