#!/bin/bash
# Boots a virtual machine and runs a command in it, as root. The machine's root is the one of this
# machine, at the same paths, with a layer in memory that takes all writing; so programs, libraries
# and the build directory are simply there. It has no network.
#
#   machine.sh --kernel DIRECTORY --output DIRECTORY [--module "NAME ARGUMENT..."]...
#              [--limit SECONDS] -- COMMAND [ARGUMENT...]
#
# --kernel  as kernel.sh makes it
# --output  emptied first, if it is from an earlier run; what the command writes there remains, and
#           `log` is the console
# --module  a kernel module that is loaded before
# --limit   after which the machine is ended, 600 seconds by default
#
# Exits with the status of the command, and with 125 when it did not come to its end.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
unfinished=125
kernel='' output='' limit=600 modules=()

fail() {
    echo "$0: $*" >&2
    exit "$unfinished"
}

while [ $# -gt 0 ]; do
    case $1 in
    --kernel) kernel=$2 ;;
    --output) output=$2 ;;
    --module) modules+=("$2") ;;
    --limit) limit=$2 ;;
    --) break ;;
    *) fail "unknown argument: $1" ;;
    esac
    shift 2
done
[ "${1:-}" = -- ] && shift
[ -n "$kernel" ] && [ -n "$output" ] && [ $# -gt 0 ] || fail "see the head of this script for use"
command -v qemu-system-x86_64 >/dev/null ||
    fail "qemu-system-x86_64 is missing; run  tools/packages.sh install vm"
kernel=$(readlink -f "$kernel")
image=$(ls "$kernel"/boot/vmlinuz-* 2>/dev/null) && [ -f "$kernel/initrd" ] ||
    fail "there is no kernel in $kernel; kernel.sh makes it"

[ ! -e "$output" ] || [ -f "$output/job" ] || fail "$output is not from an earlier run"
rm -rf "$output"
mkdir -p "$output"
output=$(readlink -f "$output")
{
    printf 'guest_output=%q\n' "$output"
    printf 'guest_modules=(%s)\n' "${modules[*]@Q}"
    printf 'guest_command=(%s)\n' "${*@Q}"
} >"$output/job"
cp "$here/guest/start.sh" "$output/start.sh"

share() {
    local tag=$1 path=$2 access=${3:-}
    printf '%s\n' -fsdev "local,id=$tag,path=$path,security_model=none,multidevs=remap$access" \
        -device "virtio-9p-pci,fsdev=$tag,mount_tag=$tag"
}
mapfile -t shares < <(
    share root / ,readonly=on
    share modules "$kernel/lib/modules" ,readonly=on
    share output "$output"
)

# Emulated on purpose: hardware virtualisation is not at hand, or hangs, where this machine is
# virtual itself.
timeout --kill-after=10 "$limit" qemu-system-x86_64 \
    -machine q35 -accel tcg,thread=multi -cpu max -smp 2 -m 1536 \
    -nodefaults -display none -nic none -no-reboot -serial stdio \
    -kernel "$image" -initrd "$kernel/initrd" \
    -append "console=ttyS0 quiet loglevel=3 panic=-1 no_timer_check mitigations=off random.trust_cpu=on" \
    "${shares[@]}" </dev/null 2>&1 | sed -u 's:\r$::' | tee "$output/log" || true

status=$(cat "$output/status" 2>/dev/null) ||
    fail "the command did not come to its end within $limit seconds; see $output/log"
exit "$status"
