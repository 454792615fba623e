#!/bin/sh
# The cost of a request on the box, through the device's web server: the
# time from power-on to the first answer of the set program, and the median
# wall time of a 0J request (20 keys) against the floor program
# (bench/floor.c) built for armhf and served the same way, in alternating
# pairs, with the settings partition on ext4 and every sync the saves make.
# Prints a Markdown section for BENCHMARKS.md.
#   bench.sh [PAIRS]   (default 40)
set -eu
cd "$(dirname "$0")/../.."
pairs=${1:-40}
sh tools/box/prepare.sh || exit $?
work=$(mktemp -d /tmp/zrcamctl-box-bench.XXXXXX)
boot=""
trap '[ -z "$boot" ] || kill $boot 2>/dev/null; wait 2>/dev/null; rm -rf "$work"' EXIT
mkdir -p "$work/overlay/web/cgi-bin"
arm-linux-gnueabihf-gcc -O2 -static -o "$work/overlay/web/cgi-bin/floor.cgi" bench/floor.c
arm-linux-gnueabihf-gcc -O2 -o "$work/overlay/web/cgi-bin/floor-shared.cgi" bench/floor.c
(cd "$work/overlay" && find . | cpio -o -H newc --quiet -R 0:0) > "$work/overlay.cpio"
cp build/box/settings.img "$work/settings.img"
body='VideoOutMode=1&AutoFocus=1&FocusPosition=4660&AfSensitivity=2&AfMode=1&AwbMode=1&WbGainR=40&WbGainB=38&ExposureMode=0&ShutterPosition=12&IrisPosition=8&GainPosition=3&ExpComp=7&Wdr=1&Defog=0&ZoomSpeed=4&DigitalZoom=1&DayNightMode=2&Gamma=3&OsdLang=EN'

port=18200
while curl -s -o /dev/null "http://127.0.0.1:$port/" 2>/dev/null; do port=$((port + 1)); done
start=$(date +%s%N)
sh tools/box/boot.sh --disk "$work/settings.img" --port "$port" --overlay "$work/overlay.cpio" \
  build/box/kernel build/box/root.cpio > "$work/console" 2>&1 &
boot=$!
post() {  # program; prints the request's wall time in microseconds
  curl -s -o /dev/null --max-time 30 -w '%{time_total}\n' -d "$body" \
    "http://127.0.0.1:$port/cgi-bin/$1" | awk '{ printf "%d\n", $1 * 1000000 }'
}
tries=0
until curl -s -o /dev/null --max-time 5 -d "$body" "http://127.0.0.1:$port/cgi-bin/zrcamctlset.cgi";
  grep -q 'zrcamctld got SIGUSR1' "$work/console"; do
  tries=$((tries + 1))
  [ $tries -lt 600 ] || { echo "bench.sh: the box did not answer" >&2; exit 1; }
  sleep 0.1
done
first_ms=$((($(date +%s%N) - start) / 1000000))
: > "$work/times"
i=0
while [ $i -lt "$pairs" ]; do
  echo "cgi $(post zrcamctlset.cgi)" >> "$work/times"
  echo "floor $(post floor.cgi)" >> "$work/times"
  echo "shared $(post floor-shared.cgi)" >> "$work/times"
  i=$((i + 1))
done
median() { awk -v k="$1" '$1 == k { print $2 }' "$work/times" | sort -n | awk '{ a[NR] = $1 } END { print (NR % 2) ? a[(NR + 1) / 2] : int((a[NR / 2] + a[NR / 2 + 1]) / 2) }'; }
# The median of the pairs' ratios, as scripts/bench.sh takes it.
ratio() {
  awk -v b="$1" '$1 == "cgi" { c[++n] = $2 } $1 == b { f[++m] = $2 }
    END { for (i = 1; i <= n; i++) print c[i] / f[i] }' "$work/times" |
    sort -g | awk '{ a[NR] = $1 } END { printf "%.2f\n", (NR % 2) ? a[(NR + 1) / 2] : (a[NR / 2] + a[NR / 2 + 1]) / 2 }'
}
cat <<MD
## On the box

Written by \`sh tools/box/bench.sh $pairs\` on $(date -u +%Y-%m-%d): the armhf build on
\`qemu-system-arm -M virt\` (Cortex-A15, 2 processors, 256 MiB, software
emulation on $(nproc) host cores), Debian's $(cat build/box/pkg/ready) kernel, the settings
partition ext4 on a virtio disk written through to its image; each request
a POST through the box's BusyBox httpd from the host, timed by curl.

| figure | measured |
|---|---|
| power-on to the set program's first answer (host wall time) | ${first_ms} ms |
| a "zrcamctlset.cgi" request, module 0J, 20 keys (median of $pairs) | $(median cgi) µs |
| the floor program, static, the same request (median of $pairs) | $(median floor) µs |
| median ratio request / floor ($pairs alternating pairs) | $(ratio floor) |
| the floor program linked with the shared libc, as the product is (median of $pairs) | $(median shared) µs |
| median ratio request / that floor | $(ratio shared) |

The floor program writes its record in place with no sync; the request
replaces the record whole and syncs the file and its directory before it
answers, so the ratio holds what durability costs on this disk.
MD
