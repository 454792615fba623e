#!/bin/sh
# Fetches what the box is made of, once, into DIR (default build/box/pkg):
# Debian's armhf kernel (found through its metapackage, linux-image-armmp),
# static busybox and mtd-utils (for the UBI tools BusyBox lacks), unpacked,
# nothing installed into the host; and the host's qemu-system-arm and
# nbdkit (the power cuts' cached disk). Exits 77 when the packages cannot be
# had, the code CTest reports as a skip.
set -u
cd "$(dirname "$0")/../.."
dir=${1:-build/box/pkg}
[ -f "$dir/ready" ] && [ -x "$dir/root/usr/sbin/ubimkvol" ] && exit 0

sh scripts/install-deps.sh qemu-system-arm kmod e2fsprogs cpio mtd-utils nbdkit || exit 77

if ! dpkg --print-foreign-architectures | grep -qx armhf; then
  dpkg --add-architecture armhf || exit 77
fi
# A partial update is enough: one source's armhf index may fail ("Mirror
# sync in progress?") while the main archive's is fine.
DEBIAN_FRONTEND=noninteractive apt-get update -qq >/dev/null 2>&1 || true
kernel=$(apt-cache depends linux-image-armmp:armhf 2>/dev/null |
  sed -n 's/^ *Depends: \(linux-image-[0-9][^ ]*-armmp\)\(:armhf\)\{0,1\}$/\1/p' | head -n 1)
if [ -z "$kernel" ]; then
  echo "box: linux-image-armmp:armhf is not in the package lists" >&2
  exit 77
fi

rm -rf "$dir" && mkdir -p "$dir/debs" "$dir/root" || exit 1
for package in "$kernel:armhf" busybox-static:armhf mtd-utils:armhf; do
  (cd "$dir/debs" && apt-get download "$package" >/dev/null 2>&1) ||
    (sleep 2; cd "$dir/debs" && apt-get download "$package" >/dev/null 2>&1) || {
      echo "box: could not download $package" >&2
      exit 77
    }
done
for deb in "$dir"/debs/*.deb; do dpkg -x "$deb" "$dir/root" || exit 1; done
rm -rf "$dir/debs"
version=$(ls "$dir/root/lib/modules")
depmod -b "$dir/root" "$version" || exit 1
echo "$version" > "$dir/ready"
