#!/bin/sh
# Builds the executable and lays out a throwaway device root in which each
# of the four programs answers a sample request; prints each answer.
set -eu
cd "$(dirname "$0")/.."
sh scripts/install-deps.sh
cmake --preset host >/dev/null
cmake --build --preset host -j "$(nproc 2>/dev/null || echo 2)" --target zrcamctl >/dev/null

root=$(mktemp -d /tmp/zrcamctl-demo.XXXXXX)
pids=""
trap 'kill $pids 2>/dev/null; rm -rf "$root"' EXIT
sh tests/device/make_device_root.sh "$root" build/host/zrcamctl
mkdir -p "$root/proc/driver" "$root/web/setup"
printf 'QEF_STR0="NVS";\nQEF_STR1="ABCDEFGHIJKLMNOPQRS0J-A1";\n' > "$root/proc/driver/qe_basic_conf"
printf '<p>camera settings page</p>\n' > "$root/web/setup/cam.htm"
printf 'CENTER_X = 320\nCENTER_Y = 240\nSRC_WIDTH = 640\n' > "$root/opt/kfp/etc/fish_eye.conf"

head -c 108 /dev/zero > "$root/opt/kfp/etc/ZrConf/ZrCamCtlConf0J.bin"  # factory record

# Daemon stand-ins that say which signal they got.
for daemon in zrcamctld vmfd; do
  busybox sh -c "trap 'echo \"  [$daemon got SIGUSR1]\"' USR1; trap 'echo \"  [$daemon got SIGUSR2]\"' USR2
                 while :; do sleep 0.1; done" &
  pids="$pids $!"
  echo $! > "$root/var/run/$daemon.pid"
done

run() {  # program, form
  echo "---- $1 <- $2"
  printf '%s' "$2" | chroot "$root" /bin/sh -c \
    "REQUEST_METHOD=POST CONTENT_TYPE=application/x-www-form-urlencoded CONTENT_LENGTH=${#2} /web/cgi-bin/$1"
  status=$?
  echo
  echo "(exit status $status)"
  sleep 0.3
}
run zrcamctlset.cgi "AwbMode=1&WbGainR=40&OsdLang=EN&RetPage=/setup/cam.htm&ZrModId=3&PortId=1"
echo "record ZrCamCtlConf0J.bin:"
od -A d -t x1 "$root/opt/kfp/etc/ZrConf/ZrCamCtlConf0J.bin"
run zrcamctlapply.cgi "RetReDir=/index.htm"
run zrcamctldefault.cgi "SaveCfg=YES&RetReDir=/index.htm"
run zrfisheyeset.cgi "CenterX=400&RetReDir=/index.htm"
echo "fish_eye.conf:"
cat "$root/opt/kfp/etc/fish_eye.conf"
