#!/bin/bash
# The Debian packages that Orvo needs, by purpose, and their installation.
#
#   tools/packages.sh list GROUP...      prints the packages of the groups
#   tools/packages.sh install GROUP...   installs those that are missing; quick when none is
#
# build    the libraries and tools that make the program
# desktop  a virtual desktop on which the program is driven by mouse and keyboard
# test     what the test suite needs beyond both
# bench    what the benchmarks need
# tidy     what the preset tidy and tools/check.sh --tidy need
# vm       what the tests in a virtual machine need, which have the label vm
set -euo pipefail

stream_server="libgstrtspserver-1.0-dev
        gstreamer1.0-plugins-base gstreamer1.0-plugins-good
        gstreamer1.0-plugins-bad gstreamer1.0-plugins-ugly"
declare -A packages=(
    [build]="cmake ninja-build g++ pkg-config ccache
        qtbase5-dev libqt5svg5-dev qttools5-dev qttools5-dev-tools
        qttranslations5-l10n qt5-image-formats-plugins
        libavformat-dev libavcodec-dev libavutil-dev libswscale-dev
        libturbojpeg0-dev libyuv-dev libaravis-dev libusb-1.0-0-dev libudev-dev
        fonts-dejavu-core"
    [desktop]="xvfb openbox x11-utils xdotool imagemagick
        dbus-daemon at-spi2-core gir1.2-atspi-2.0 python3 python3-gi"
    [test]="clang-format aravis-tools ffmpeg iproute2 libumockdev-dev umockdev $stream_server"
    [bench]="libbenchmark-dev ffmpeg xvfb openbox x11-utils $stream_server"
    [tidy]="clang-tidy"
    [vm]="qemu-system-x86 busybox-static cpio kmod udev python3"
)

fail() {
    echo "$0: $*" >&2
    exit 1
}

list() {
    local group
    for group in "$@"; do
        [ -n "${packages[$group]:-}" ] || fail "no such group: $group"
        printf '%s\n' ${packages[$group]}
    done | sort -u
}

missing() {
    local installed
    installed=$(dpkg-query -W -f='${db:Status-Abbrev} ${Package}\n' "$@" 2>/dev/null |
        sed -n 's/^ii *//p' | sort -u) || true
    comm -23 <(printf '%s\n' "$@" | sort -u) <(printf '%s\n' "$installed")
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        fail "these packages are missing, and neither root nor sudo is at hand: ${absent[*]}"
    fi
}

apt_get() {
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get -y -q -o DPkg::Lock::Timeout=300 "$@" </dev/null
}

install() {
    local wanted absent
    mapfile -t wanted < <(list "$@")
    [ "${#wanted[@]}" -gt 0 ] || exit 1
    command -v dpkg-query >/dev/null && command -v apt-get >/dev/null ||
        fail "this is no Debian system; install what these packages hold: ${wanted[*]}"
    mapfile -t absent < <(missing "${wanted[@]}")
    [ "${#absent[@]}" -gt 0 ] || return 0

    echo "Installing ${absent[*]}"
    apt_get update || echo "$0: the package lists could not be renewed, going on with the old" >&2
    apt_get install --no-install-recommends "${absent[@]}" ||
        fail "could not install ${absent[*]}"
    mapfile -t absent < <(missing "${wanted[@]}")
    [ "${#absent[@]}" -eq 0 ] || fail "still missing after the installation: ${absent[*]}"
}

[ $# -ge 2 ] || fail "usage: $0 list|install build|desktop|test|bench|tidy|vm..."
command=$1
shift
case $command in
list) list "$@" ;;
install) install "$@" ;;
*) fail "unknown command: $command" ;;
esac
