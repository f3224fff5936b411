#!/bin/bash
# run.sh [SCRIPT.py] ARGUMENT...  runs drive.py, or another driver beside it, with a home, a display,
# a session bus and an accessibility bus of its own.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
driver=drive.py
if [[ ${1:-} == *.py ]]; then
    driver=$1
    shift
fi
log=$(mktemp)
trap 'rm -f "$log"' EXIT

export QT_QPA_PLATFORM=xcb QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 LC_ALL=C.UTF-8
unset LANGUAGE QT_SCALE_FACTOR NO_AT_BRIDGE DBUS_SESSION_BUS_ADDRESS AT_SPI_BUS_ADDRESS
# The buses' own chatter goes to the log; the driver keeps the real output, descriptors 8 and 9.
if "$here/../support/isolated.sh" "$here/../support/with-display.sh" \
    dbus-run-session -- bash -c 'exec "$@" 1>&8 2>&9 8>&- 9>&-' drive \
    /usr/bin/python3 -B "$here/$driver" "$@" 8>&1 9>&2 >"$log" 2>&1; then
    exit 0
else
    status=$?
    [ "$status" -eq 1 ] || cat "$log" >&2 # 1: the driver has told itself what failed
    exit "$status"
fi
