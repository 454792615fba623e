#!/bin/sh
# Inside the box: a device root (scripts/make_device_root.sh, same
# arguments) whose /opt/kfp is JFFS2 on the kernel's simulated NAND.
set -eu
sh "$(dirname "$0")/../../scripts/make_device_root.sh" "$@"
root=$1
# Two partitions of 16 MiB, one for each of two shards (GTEST_SHARD_INDEX).
grep -q 'NAND simulator' /proc/mtd || modprobe nandsim first_id_byte=0x20 second_id_byte=0x75 parts=1024,1024
grep -q jffs2 /proc/filesystems || modprobe jffs2
mtd=$(sed -n 's/^\(mtd[0-9]*\):.*NAND simulator.*/\1/p' /proc/mtd | sed -n "$((${GTEST_SHARD_INDEX:-0} + 1))p")
mkdir -p "$root/opt/kfp"
mount -t jffs2 "$mtd" "$root/opt/kfp"
