#!/bin/bash
# Goes on after guest/init: brings devices to life, loads the modules, runs the command and turns
# the virtual machine off. /mnt is the output directory.
. /mnt/job
export PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin
export HOME=/root TMPDIR=/tmp LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen

prepare() {
    mkdir -p /dev/shm /dev/pts /tmp "$guest_output"
    mount -t tmpfs shm /dev/shm
    mount -t devpts pts /dev/pts
    mount --bind /mnt "$guest_output"
    busybox ip link set lo up
    /lib/systemd/systemd-udevd --daemon
}

load_modules() {
    local line
    for line in "${guest_modules[@]}"; do
        # The line is a module and its arguments.
        modprobe $line || { echo "Cannot load the module: $line" && return 1; }
    done
    udevadm settle --timeout=60
}

run() {
    prepare
    load_modules || return 125
    echo "Kernel $(uname -r) is ready after $(cut -d' ' -f1 /proc/uptime) s"
    (cd / && "${guest_command[@]}")
}

run </dev/null
echo $? >/mnt/status
sync
busybox poweroff -f
