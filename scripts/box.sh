#!/bin/sh
# The device in a box: the armhf build booted on an emulated ARM board
# (qemu-system-arm -M virt, Debian's armmp kernel, static busybox as the
# device's userland), with the settings partition on an ext4 disk image
# kept in build/box across boots.
#
#   sh scripts/box.sh [MODULE]
#
# Builds what is missing, boots, and keeps the box up until Ctrl-C. MODULE
# (default 0J) is the camera module the product code names. The device's
# web server answers on http://127.0.0.1:PORT/ (PORT default 8080); the
# console (daemon stand-ins' signals, the programs' diagnostics, a shell)
# is this terminal. Remove build/box/settings.img for a factory-fresh
# settings partition. Runs as root (apt-get for the packages).
set -eu
cd "$(dirname "$0")/.."
module=${1:-0J} port=${PORT:-8080}
case $module in -*) sed -n '2,/^set/p' "$0" | sed '$d; s/^# \{0,1\}//' >&2; exit 2 ;; esac
sh tools/box/prepare.sh || { echo "box.sh: the box's packages could not be had" >&2; exit 1; }
echo "booting; the device's web server will answer on http://127.0.0.1:$port/"
exec sh tools/box/boot.sh --disk build/box/settings.img --port "$port" --module "$module" \
  build/box/kernel build/box/root.cpio
