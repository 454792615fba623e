#!/bin/sh
# Inside the box: a device root (scripts/make_device_root.sh, same
# arguments) whose /opt/kfp is JFFS2 on the kernel's simulated NAND.
set -eu
sh "$(dirname "$0")/../../scripts/make_device_root.sh" "$@"
root=$1
grep -q 'NAND simulator' /proc/mtd || modprobe nandsim first_id_byte=0x20 second_id_byte=0x75
grep -q jffs2 /proc/filesystems || modprobe jffs2
mtd=$(sed -n 's/^\(mtd[0-9]*\):.*NAND simulator.*/\1/p' /proc/mtd | head -n 1)
mkdir -p "$root/opt/kfp"
mount -t jffs2 "$mtd" "$root/opt/kfp"
