#!/bin/sh
# Assembles the box's root file system as an initramfs:
#   make_root.sh PKG INSTALL_TREE OUT.cpio
# PKG is what fetch.sh unpacked (kernel modules, busybox); INSTALL_TREE is
# `cmake --install build/armhf --prefix ...`: the install layout is the
# device layout. Besides them: the armhf C library (and the C++ runtime the
# test executables need, which the product does not), the daemon stand-ins,
# a savecfg stand-in, the UBI volume maker and the modules the box loads.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
pkg=$(cd "$1" && pwd) tree=$(cd "$2" && pwd) out=$(cd "$(dirname "$3")" && pwd)/$(basename "$3")
sysroot=/usr/arm-linux-gnueabihf
version=$(cat "$pkg/ready")
stage=$(mktemp -d /tmp/zrcamctl-box-root.XXXXXX)
trap 'rm -rf "$stage"' EXIT
cd "$stage"
mkdir -p bin sbin usr/bin usr/sbin lib proc sys dev tmp var/run var/log opt/kfp/etc mnt web/cgi-bin factory
cp "$pkg/root/bin/busybox" bin/busybox
cp "$pkg/root/usr/sbin/ubimkvol" usr/sbin/ubimkvol  # BusyBox has no UBI volume tools
ln -s busybox bin/sh
cp "$here/init" init
chmod 755 init
for daemon in zrcamctld vmfd; do install -m 755 "$here/standin" "usr/sbin/$daemon"; done
cat > usr/sbin/savecfg <<'SH'
#!/bin/sh
echo "savecfg $*" >> /var/run/savecfg.calls
SH
chmod 755 usr/sbin/savecfg
# ldd as glibc's own: the loader lists what an executable needs.
printf '#!/bin/sh\nexec /lib/ld-linux-armhf.so.3 --list "$@"\n' > usr/bin/ldd
chmod 755 usr/bin/ldd
for lib in ld-linux-armhf.so.3 libc.so.6 libm.so.6 libstdc++.so.6 libgcc_s.so.1; do
  cp -L "$sysroot/lib/$lib" "lib/$lib"
done
cp -a "$tree/." .

# The modules init loads, with what they need (modules.dep).
modules="crc32c_generic virtio_mmio virtio_net virtio_blk ext4 9pnet_virtio 9p nandsim jffs2 ubi ubifs
  zstd deflate"  # UBIFS asks for every compressor it knows when it loads
dep=$pkg/root/lib/modules/$version/modules.dep
mkdir -p "lib/modules/$version"
for m in $modules; do
  line=$(grep -E "(^|/)$m\.ko(\.[a-z]+)?:" "$dep")
  for f in ${line%%:*} ${line#*:}; do
    mkdir -p "lib/modules/$version/$(dirname "$f")"
    cp "$pkg/root/lib/modules/$version/$f" "lib/modules/$version/$f"
  done
done
# Only their lines of the kernel's module lists: modprobe reads the lists
# whole at every call, and the kernel's are half a megabyte and more.
(cd "lib/modules/$version" && find kernel -name '*.ko*' | sort) > "$stage/copied"
awk -F: 'NR == FNR { have[$1] = 1; next } have[$1]' "$stage/copied" "$dep" > "lib/modules/$version/modules.dep"
sed 's|.*/||; s|\.ko.*||; s|-|_|g' "$stage/copied" |
  awk 'NR == FNR { have[$1] = 1; next } { m = $NF; gsub(/-/, "_", m) } have[m]' - \
    "$pkg/root/lib/modules/$version/modules.alias" > "lib/modules/$version/modules.alias"
rm "$stage/copied"
cp "$pkg/root/lib/modules/$version/modules.builtin" "lib/modules/$version/"
find . | sort | cpio -o -H newc --quiet -R 0:0 > "$out"
