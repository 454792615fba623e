#!/bin/sh
# Boots the box once and waits for it to power off (or be killed):
#   boot.sh [OPTIONS] KERNEL INITRD
#   --disk IMAGE     the settings partition's disk (ext4), kept across boots,
#                    written through: every write the box makes reaches IMAGE
#   --nbd SOCKET     the settings partition's disk instead served by an NBD
#                    server on the Unix socket SOCKET, as a disk with a
#                    volatile write cache: the box sees the cache and flushes it
#   --fs ext4|jffs2|ubifs  the settings partition's file system (jffs2,
#                    ubifs: on simulated NAND, fresh each boot, from /factory)
#   --port PORT      forward 127.0.0.1:PORT on the host to the box's port 80
#   --share DIR      the host's DIR, at the same path in the box (9p)
#   --run SCRIPT     run SCRIPT (a path in the box) after start-up, then power off
#   --module CODE    the camera module the product code names (default 0J)
#   --memory MB      (default 256)
#   --cpus N         processors (default 2)
#   --overlay CPIO   files laid over the root (an initramfs archive of its own)
#   --pidfile FILE   qemu's pid, for whoever must stop it (a power cut)
# The console is this process's standard output. User-mode networking only
# (restrict=on): the box reaches nothing; the host reaches it on 127.0.0.1.
set -eu
disk="" nbd="" fs=ext4 port="" share="" run="" module=0J memory=256 cpus=2 overlay="" pidfile=""
while [ $# -gt 2 ]; do
  case $1 in
    --disk) disk=$2 ;;
    --nbd) nbd=$2 ;;
    --fs) fs=$2 ;;
    --port) port=$2 ;;
    --share) share=$2 ;;
    --run) run=$2 ;;
    --module) module=$2 ;;
    --memory) memory=$2 ;;
    --cpus) cpus=$2 ;;
    --overlay) overlay=$2 ;;
    --pidfile) pidfile=$2 ;;
    *) echo "boot.sh: unknown option $1" >&2; exit 2 ;;
  esac
  shift 2
done
kernel=$1 initrd=$2
qemu="" joined=""
trap '[ -z "$qemu" ] || kill $qemu 2>/dev/null; rm -f "$joined" "$pidfile"' EXIT
trap 'exit 130' INT
trap 'exit 143' TERM
if [ -n "$overlay" ]; then  # the kernel unpacks archives one after the other
  # Beside the overlay, in its caller's work directory, which goes with it
  # even when this script is killed before its trap runs.
  joined=$(mktemp "$(dirname "$overlay")/initrd.XXXXXX")
  cat "$initrd" "$overlay" > "$joined"
  initrd=$joined
fi
# cryptomgr.notests: the kernel's self-tests of its crypto algorithms, at
# boot and at each module's load, took the emulated board some 2.5 s a boot.
append="console=ttyAMA0 quiet panic=-1 cryptomgr.notests rdinit=/init box.module=$module box.fs=$fs"
set -- -M virt -cpu cortex-a15 -smp "$cpus" -m "$memory" -nographic -monitor none -serial stdio \
  -kernel "$kernel" -initrd "$initrd" -no-reboot
net=user,id=net0,restrict=on
[ -n "$port" ] && net="$net,hostfwd=tcp:127.0.0.1:$port-:80"
set -- "$@" -netdev "$net" -device virtio-net-device,netdev=net0
[ -n "$disk" ] && set -- "$@" -drive "file=$disk,format=raw,if=none,id=disk0,cache=writethrough" \
  -device virtio-blk-device,drive=disk0
[ -n "$nbd" ] && set -- "$@" -drive "driver=raw,file.driver=nbd,file.path=$nbd,if=none,id=disk0,cache=writeback" \
  -device virtio-blk-device,drive=disk0
if [ -n "$share" ]; then
  set -- "$@" -fsdev "local,id=share0,path=$share,security_model=none" \
    -device "virtio-9p-device,fsdev=share0,mount_tag=share"
  append="$append box.share=$share"
fi
[ -n "$run" ] && append="$append box.run=$run"
# In the background, so that a signal to this script stops qemu too; the
# console keeps this script's standard input.
exec 3<&0
qemu-system-arm "$@" -append "$append" <&3 &
qemu=$!
[ -z "$pidfile" ] || echo $qemu > "$pidfile"
status=0
wait $qemu || status=$?
qemu=""
exit $status
