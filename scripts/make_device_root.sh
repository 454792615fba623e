#!/bin/sh
# Lays out a throwaway directory like the device's root file system:
#   make_device_root.sh [OPTIONS] ROOT EXECUTABLE [EMULATOR SYSROOT]
# The executable is installed as the five CGI programs (one file, four
# links). Without an emulator the host's run-time libraries of the
# executable are copied in; with one, the emulator and the target's
# dynamic loader and C library are.
# Options, for a device that is ready to answer (demo, simulator, benchmark):
#   --module CODE        basic configuration naming camera module CODE and a
#                        fisheye correction file
#   --record-bytes N     factory record of N zero bytes for that module
#   --programs DIR       install the programs in DIR of the root instead of
#                        web/cgi-bin (the simulator puts its adapter there)
set -eu
module="" record_bytes="" programs=web/cgi-bin
while [ $# -gt 0 ]; do
  case $1 in
    --module) module=$2; shift 2 ;;
    --record-bytes) record_bytes=$2; shift 2 ;;
    --programs) programs=$2; shift 2 ;;
    *) break ;;
  esac
done
root=$1 exe=$(readlink -f "$2") emulator=${3:-} sysroot=${4:-}

# Hard links where the file system allows, copies elsewhere.
put() { mkdir -p "$(dirname "$2")"; ln -f "$1" "$2" 2>/dev/null || cp -f "$1" "$2"; }

mkdir -p "$root"
cd "$root"
mkdir -p bin usr/bin usr/sbin lib var/run tmp web/cgi-bin opt/kfp/etc/ZrConf proc dev
[ -e dev/null ] || mknod -m 666 dev/null c 1 3
[ -e dev/full ] || mknod -m 666 dev/full c 1 7

busybox=$(command -v busybox)
case $busybox in /*) ;; *) busybox=/bin/busybox ;; esac  # busybox's own sh names no path
put "$busybox" bin/busybox
for applet in sh cat touch rm; do ln -sf busybox "bin/$applet"; done

cat > usr/sbin/savecfg <<'SH'
#!/bin/sh
echo "savecfg $*" >> /var/savecfg.calls
SH
chmod 755 usr/sbin/savecfg

put "$exe" "$programs/zrcamctlset.cgi"
for name in zrcamctlapply.cgi zrcamctldefault.cgi zrfisheyeset.cgi zrcamctlget.cgi; do
  ln -sf zrcamctlset.cgi "$programs/$name"
done

if [ -n "$module" ]; then
  # Characters 19 and 20 of the product code name the camera module.
  mkdir -p proc/driver
  printf 'QEF_STR0="NVS";\nQEF_STR1="ABCDEFGHIJKLMNOPQRS%s-A1";\nQEF_STR2="1.0.3";\n' "$module" \
    > proc/driver/qe_basic_conf
  printf 'CENTER_X = 320\nCENTER_Y = 240\nSRC_WIDTH = 640\n' > opt/kfp/etc/fish_eye.conf
  if [ -n "$record_bytes" ]; then
    head -c "$record_bytes" /dev/zero > "opt/kfp/etc/ZrConf/ZrCamCtlConf$module.bin"
  fi
fi

if [ -n "$emulator" ]; then
  put "$emulator" usr/bin/qemu-arm-static
  put "$sysroot/lib/ld-linux-armhf.so.3" lib/ld-linux-armhf.so.3
  put "$sysroot/lib/libc.so.6" lib/libc.so.6
else
  for lib in $(ldd "$exe" | grep -o '/[^ ]*'); do
    real=$(readlink -f "$lib")
    mkdir -p ".$(dirname "$lib")"
    cp -f "$real" ".$lib"
  done
fi
