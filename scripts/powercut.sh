#!/bin/sh
# Power cuts on the box: boots the armhf build with a throwaway copy of its
# settings partition (the records and the preset file the saves touch given
# patterned bytes first, so that no block out of place passes for whole),
# sends saves through the device's web server (0J and 0y records, the
# fisheye file, a 1C preset label; each value says which save it was), cuts
# the power, and checks, before new saves, that every file is whole (the
# first state or one save's result), that every answered save or a later
# one is there and that no leftover of a killed save outlives the next save
# of its file. The disk (--disk):
#   ext4    ext4 on an image qemu writes through (default); a cut is SIGKILL
#           to qemu at a random instant, half of the time a few milliseconds
#           after an answer, then a boot from the same disk
#   cached  the same image behind nbdkit's cache in writeback mode: a disk
#           with a volatile write cache, which the cut (SIGKILL to nbdkit and
#           qemu) empties
#   ubifs   UBIFS on simulated NAND, cut by its own power-cut emulation, then
#           unmounted and mounted again (a new box every ten minutes)
#   all     N cuts on each of the three, side by side
#
#   sh scripts/powercut.sh [N [CHAINS]] [--disk ext4|cached|ubifs|all]
#                                     N cuts a disk (default 10), shared by
#                                     CHAINS boxes of one processor each, side
#                                     by side on disk images of their own
#                                     (default: one per host processor; one
#                                     a disk with all)
#   sh scripts/powercut.sh --cost [PAIRS]
#                                     median wall time of a 0J save, this
#                                     initramfs against build/box/root.cpio
#                                     (two boxes, PAIRS alternating saves)
#
# Prints "DISK: cuts N, torn T, empty E, acknowledged lost L" a disk and
# exits 1 unless all three are 0 (or a leftover stays); 77 when the box's
# packages cannot be had. ZRCAMCTL_BOX_ROOT=ROOT.cpio boots another
# initramfs (a variant build laid out by tools/box/make_root.sh);
# ZRCAMCTL_POWERCUT_VERBOSE=1 tells each cut, ZRCAMCTL_POWERCUT_KEEP=DIR
# keeps the files and consoles of a failed check. Runs as root.
set -u
cd "$(dirname "$0")/.."
sh tools/box/prepare.sh
status=$?
[ $status = 77 ] && exit 77
[ $status = 0 ] || { echo "powercut: the box could not be made" >&2; exit 1; }
sh scripts/install-deps.sh python3 >/dev/null || exit 1

# Copies, so that a rebuild of build/box during the run changes nothing.
work=$(mktemp -d /tmp/zrcamctl-powercut.XXXXXX)
cp build/box/kernel "$work/kernel"
cp build/box/root.cpio "$work/real.cpio"
cp "${ZRCAMCTL_BOX_ROOT:-build/box/root.cpio}" "$work/root.cpio"
cp build/box/settings.img "$work/settings.img"

# Laid over the root: the answer adapter in front of the two programs (in
# /web/cgi-bin/pc, the programs themselves reached through /opt/sim/bin),
# the state dump, module attachment and the run script.
o=$work/overlay
mkdir -p "$o/web/cgi-bin/pc" "$o/opt/sim/bin" "$o/powercut"
for p in zrcamctlset.cgi zrfisheyeset.cgi; do
  cp tools/sim/adapter.cgi "$o/web/cgi-bin/pc/$p"
  ln -s "/web/cgi-bin/$p" "$o/opt/sim/bin/$p"
done
cp tools/box/powercut/state.cgi tools/box/powercut/attach.cgi tools/box/powercut/ubifs.cgi "$o/web/cgi-bin/pc/"
cp tools/box/powercut/run.sh "$o/powercut/"
chmod -R u=rwX,go=rX "$o" && chmod 755 "$o"/web/cgi-bin/pc/* "$o/powercut/run.sh"
(cd "$o" && find . | sort | cpio -o -H newc --quiet -R 0:0) > "$work/overlay.cpio"
exec python3 tools/box/powercut/cut.py "$work" "$@"
