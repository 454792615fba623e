#!/bin/sh
# Makes what booting the box takes, when missing or older than its sources,
# in build/box:
#   pkg/            Debian's armhf kernel and busybox, unpacked (fetch.sh)
#   tree/           cmake --install build/armhf: the device layout
#   factory/        the factory files: fish_eye.conf, every module's record
#   root.cpio       the initramfs (make_root.sh), the factory files in /factory
#   settings.img    the settings partition, ext4, made once from the factory
#                   files and then kept across boots as a device's flash is
#                   (remove it for a factory-fresh device)
#   kernel          the kernel image
# Exits 77 when the packages cannot be had.
set -eu
cd "$(dirname "$0")/../.."
box=build/box
sh tools/box/fetch.sh "$box/pkg" || exit $?
sh scripts/install-deps.sh >/dev/null

[ -f build/armhf/CMakeCache.txt ] || cmake --preset armhf >/dev/null
cmake --build --preset armhf -j "$(nproc)" --target zrcamctl zrcamctl-inspect >/dev/null
# Each piece is made beside its place and renamed into it, so that a box
# booting meanwhile takes a whole one.
tree=$box/tree.$$
trap 'rm -rf "$tree" "$box/factory.$$" "$box/root.cpio.$$" "$box/kernel.$$"' EXIT
cmake --install build/armhf --prefix "$tree" >/dev/null

# Factory files: fish_eye.conf and, for every camera module with a family,
# its record of zeros (sizes from the key reference).
factory=$box/factory.$$
mkdir -p "$factory/ZrConf"
printf 'CENTER_X = 320\nCENTER_Y = 240\nSRC_WIDTH = 640\n' > "$factory/fish_eye.conf"
qemu-arm-static -L /usr/arm-linux-gnueabihf build/armhf/zrcamctl-inspect --reference |
  awk '/^- Module codes:/ { codes = $0 }
       /^- Record: / { n = split(codes, c, " "); for (i = 4; i <= n && c[i] != "none"; i++)
                         if (c[i] ~ /^[0-9A-Za-z][0-9A-Za-z]$/) print c[i], $3 }' > "$box/record-bytes"
while read -r code bytes; do
  head -c "$bytes" /dev/zero > "$factory/ZrConf/ZrCamCtlConf$code.bin"
done < "$box/record-bytes"

cp -a "$factory" "$tree/factory"
sh tools/box/make_root.sh "$box/pkg" "$tree" "$box/root.cpio.$$"
mv -f "$box/root.cpio.$$" "$box/root.cpio"
cp "$box/pkg/root/boot/vmlinuz-$(cat "$box/pkg/ready")" "$box/kernel.$$"
mv -f "$box/kernel.$$" "$box/kernel"
if [ ! -f "$box/settings.img" ]; then
  mkfs.ext4 -q -L settings -d "$factory" "$box/settings.img.$$" 32M >/dev/null
  mv "$box/settings.img.$$" "$box/settings.img"
fi
rm -rf "$box/tree" "$box/factory.old"
mv "$tree" "$box/tree"
[ ! -d "$box/factory" ] || mv "$box/factory" "$box/factory.old"
mv "$factory" "$box/factory"
rm -rf "$box/factory.old"
