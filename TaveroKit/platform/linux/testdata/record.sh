#!/bin/sh
# Records what Tavero reads of this Linux machine into a folder beside this script:
#   record.sh NAME          then add a line about the machine to README.md
# Left out on purpose: serial numbers, hardware addresses, and mounts other than those of disks.
set -eu
[ $# -eq 1 ] || { echo "usage: record.sh NAME" >&2; exit 2; }
tree=$(dirname "$0")/$1
mkdir "$tree"

# Kernel files can't be copied by size, so each is read to its end; one that refuses is left out.
file() {
    [ -f "$1" ] && [ -r "$1" ] || return 0
    mkdir -p "$tree$(dirname "$1")"
    cat "$1" > "$tree$1" 2>/dev/null || rm "$tree$1"
}
link() {
    [ -L "$1" ] || return 0
    mkdir -p "$tree$(dirname "$1")"
    cp -P "$1" "$tree$1"
}

for path in stat loadavg meminfo pressure/memory; do file "/proc/$path"; done
mkdir -p "$tree/proc/self"
grep ' - [^ ]* /dev/' /proc/self/mountinfo > "$tree/proc/self/mountinfo" || true

for path in /sys/devices/cpu_*/cpus /sys/devices/system/cpu/cpu[0-9]*/cpu_capacity \
    /sys/firmware/acpi/platform_profile; do
    file "$path"
done

for entry in /sys/class/power_supply/*; do
    [ -e "$entry" ] || continue
    link "$entry"
    device=$(readlink -f "$entry")
    for name in type scope online present status; do file "$device/$name"; done
done

for entry in /sys/class/block/*; do
    [ -e "$entry" ] || continue
    link "$entry"
    link "/sys/block/${entry##*/}"
    device=$(readlink -f "$entry")
    for name in stat removable hidden partition dev disksize mm_stat device/type; do
        file "$device/$name"
    done
    mkdir -p "$tree$device"
    link "$device/device"
    for disk in "$device"/slaves/*; do link "$disk"; done
done

for entry in /sys/class/net/*; do
    [ -L "$entry" ] || continue
    link "$entry"
    device=$(readlink -f "$entry")
    link "$device/device"
    for name in ifindex statistics/rx_bytes statistics/tx_bytes; do file "$device/$name"; done
done

for path in /sys/dev/block/* /dev/disk/by-label/* /dev/mapper/*; do link "$path"; done
