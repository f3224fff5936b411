#!/bin/bash
# Makes what machine.sh boots: Debian's kernel, downloaded as a package and unpacked, never
# installed, and a first root file system that leads to the machine's own.
#
#   kernel.sh DIRECTORY
#
# DIRECTORY then holds boot/vmlinuz-*, lib/modules and initrd. Quick when they are there already.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
directory=${1:?usage: $0 DIRECTORY}
export PATH=$PATH:/usr/sbin:/sbin

fail() {
    echo "$0: $*" >&2
    exit 1
}

require_tools() {
    local tool
    for tool in qemu-system-x86_64 busybox cpio depmod modprobe udevadm apt-get dpkg-deb; do
        command -v "$tool" >/dev/null ||
            fail "$tool is missing; run  tools/packages.sh install vm"
    done
}

# The package that Debian's standard kernel for this machine stands for at present.
kernel_package() {
    apt-cache depends linux-image-amd64 2>/dev/null | sed -n 's/^ *Depends: //p' | head -n 1
}

unpack_kernel() {
    local package download
    package=$(kernel_package)
    [ -n "$package" ] || fail "apt knows no Debian kernel; run  apt-get update"
    download=$(mktemp -d "$directory/download.XXXXXX")
    (cd "$download" && apt-get download -q "$package") ||
        fail "cannot download $package; run  apt-get update  and look at the network"
    dpkg-deb -x "$download"/*.deb "$download/kernel"
    depmod -b "$download/kernel" "$(ls "$download/kernel/lib/modules")"
    rm -rf "$directory/boot" "$directory/lib"
    mv "$download/kernel/lib" "$directory/lib"
    mv "$download/kernel/boot" "$directory/boot"
    rm -rf "$download"
}

# The modules that it takes to reach the machine's own root, in the order of their loading.
first_modules() {
    local version=$1 module
    for module in virtio_pci 9pnet_virtio 9p overlay; do
        modprobe -d "$directory" -S "$version" -D "$module"
    done | sed -n 's/^insmod \([^ ]*\).*/\1/p' | awk '!seen[$0]++'
}

make_initrd() {
    local root number=10 module
    root=$(mktemp -d)
    mkdir -p "$root"/{bin,modules,proc,sys,dev,lower,upper,new}
    cp "$(command -v busybox)" "$root/bin/busybox"
    cp "$here/guest/init" "$root/init"
    while IFS= read -r module; do
        cp "$module" "$root/modules/$number-$(basename "$module")"
        number=$((number + 1))
    done < <(first_modules "$(ls "$directory/lib/modules")")
    (cd "$root" && find . | cpio -o -H newc --quiet | gzip -1) >"$directory/initrd.new"
    mv "$directory/initrd.new" "$directory/initrd"
    rm -rf "$root"
}

require_tools
mkdir -p "$directory"
directory=$(readlink -f "$directory")
ls "$directory"/boot/vmlinuz-* >/dev/null 2>&1 || unpack_kernel
make_initrd
echo "The virtual machine's kernel is $(ls "$directory/lib/modules")"
