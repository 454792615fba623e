#!/bin/sh
# Makes what booting the box takes, when missing or older than its sources,
# in build/box:
#   pkg/            Debian's armhf kernel and busybox, unpacked (fetch.sh)
#   tree/           cmake --install build/armhf: the device layout
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
rm -rf "$box/tree"
cmake --install build/armhf --prefix "$box/tree" >/dev/null

# Factory files: fish_eye.conf and, for every camera module with a family,
# its record of zeros (sizes from the key reference).
factory=$box/factory
rm -rf "$factory" && mkdir -p "$factory/ZrConf"
printf 'CENTER_X = 320\nCENTER_Y = 240\nSRC_WIDTH = 640\n' > "$factory/fish_eye.conf"
qemu-arm-static -L /usr/arm-linux-gnueabihf build/armhf/zrcamctl-inspect --reference |
  awk '/^- Module codes:/ { codes = $0 }
       /^- Record: / { n = split(codes, c, " "); for (i = 4; i <= n && c[i] != "none"; i++)
                         if (c[i] ~ /^[0-9A-Za-z][0-9A-Za-z]$/) print c[i], $3 }' > "$box/record-bytes"
while read -r code bytes; do
  head -c "$bytes" /dev/zero > "$factory/ZrConf/ZrCamCtlConf$code.bin"
done < "$box/record-bytes"

rm -rf "$box/tree/factory" && cp -a "$factory" "$box/tree/factory"
sh tools/box/make_root.sh "$box/pkg" "$box/tree" "$box/root.cpio"
cp "$box/pkg/root/boot/vmlinuz-$(cat "$box/pkg/ready")" "$box/kernel"
if [ ! -f "$box/settings.img" ]; then
  mkfs.ext4 -q -L settings -d "$factory" "$box/settings.img.new" 32M >/dev/null
  mv "$box/settings.img.new" "$box/settings.img"
fi
