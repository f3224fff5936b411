#!/bin/sh
# Runs a test with umockdev loaded, so that it can make devices that only it sees. The runtime of a
# sanitizer has to be loaded before it.
set -u
runtime=$(ldd "$1" | sed -n 's/.* => \(.*\/lib[at]san\.so[^ ]*\) .*/\1/p')
exec env LD_PRELOAD="${runtime:+$runtime:}libumockdev-preload.so.0" "$@"
