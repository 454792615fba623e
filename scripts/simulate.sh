#!/bin/sh
# Runs the device on this machine: a throwaway device root with the real
# programs behind BusyBox httpd (the device's kind of web server), settings
# pages for every camera module, and daemon stand-ins that say which signal
# they got.
#
#   sh scripts/simulate.sh [--arm | --box] [--once] [--raw] [MODULE]
#
# MODULE is the attached camera module (default 0J); opening another
# module's page attaches that one. PORT (default 8080) is the server's port
# on 127.0.0.1. --arm runs the armhf build under qemu-arm-static. --once
# makes one request per program through the server, prints the answers and
# exits (non-zero when an answer is not what the program should give).
# --raw serves the programs without the adapter (tools/sim/adapter.cgi), to
# see what the server makes of their answers on its own. --box serves the
# same pages from the box instead (tools/box: the armhf build booted on an
# emulated ARM board, its own busybox httpd and daemon stand-ins, the console
# on standard output): the simulator's files go in over the box's root
# (--overlay), and the settings partition is a throwaway one made from the
# factory files at each start, so the box's kept build/box/settings.img is
# left as it is. Exits 77 when the box cannot be made (tools/box/prepare.sh).
# Ctrl-C stops everything and removes the root. Runs as root (chroot).
set -eu
cd "$(dirname "$0")/.."

arm=0 box=0 once=0 raw=0 module=0J port=${PORT:-8080}
for arg; do
  case $arg in
    --arm) arm=1 ;;
    --box) box=1 arm=1 ;;  # the box's build, and its inspector here under qemu-arm-static
    --once) once=1 ;;
    --raw) raw=1 ;;
    -*) sed -n '2,/^set/p' "$0" | sed '$d; s/^# \{0,1\}//' >&2; exit 2 ;;
    *) module=$arg ;;
  esac
done

sh scripts/install-deps.sh
[ $box = 0 ] || sh tools/box/prepare.sh || exit $?
preset=host emulator="" sysroot=""
if [ $arm = 1 ]; then
  preset=armhf emulator=$(command -v qemu-arm-static) sysroot=/usr/arm-linux-gnueabihf
fi
# ZRCAMCTL_EXE names an executable already built (the tests pass theirs);
# ZRCAMCTL_INSPECT likewise the record inspector.
exe=${ZRCAMCTL_EXE:-build/$preset/zrcamctl}
inspector=${ZRCAMCTL_INSPECT:-build/$preset/zrcamctl-inspect}
[ $box = 0 ] || exe=build/box/tree/web/cgi-bin/zrcamctlset.cgi inspector=build/armhf/zrcamctl-inspect
if [ $box = 0 ] && { [ -z "${ZRCAMCTL_EXE:-}" ] || [ -z "${ZRCAMCTL_INSPECT:-}" ]; }; then
  [ -f "build/$preset/CMakeCache.txt" ] || cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset" -j 2 --target zrcamctl zrcamctl-inspect >/dev/null
fi
inspect() {
  if [ -n "$emulator" ]; then "$emulator" -L "$sysroot" "$inspector" "$@"; else "$inspector" "$@"; fi
}

# "CODE BYTES Family" a module, from the key reference the inspector writes
# from the layouts; codes without a family have "-" for their size.
modules() {
  inspect --reference | awk '
    /^## / { family = substr($0, 4) }
    /^- Module codes:/ { codes = $0 }
    /^- Record: / { n = split(codes, c, " "); for (i = 4; i <= n && c[i] != "none"; i++) if (c[i] ~ /^[0-9A-Za-z][0-9A-Za-z]$/) print c[i], $3, family }
    /^Module codes without a family:/ { for (i = 6; i <= NF; i++) print $i, "-", "(no family)" }'
}
work=$(mktemp -d /tmp/zrcamctl-sim.XXXXXX)
root=$work/root pids="" boot=""
cleanup() {
  trap - EXIT INT TERM
  for pid in $pids; do kill "$pid" 2>/dev/null || :; done
  [ -z "$boot" ] || wait "$boot" || :  # boot.sh stops qemu as it exits
  rm -rf "$work"
}
trap cleanup EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

modules > "$work/modules"
if ! grep -q "^$module " "$work/modules"; then
  echo "simulate.sh: no camera module \"$module\" in the module table" >&2
  exit 2
fi

if [ $box = 1 ]; then  # what goes in over the box's root; the programs are its own
  root=$work/overlay
  mkdir -p "$root/opt/sim/bin" "$root/web/cgi-bin"
  if [ $raw = 0 ]; then
    cp "$exe" "$root/opt/sim/bin/zrcamctlset.cgi"
    for name in zrcamctlapply.cgi zrcamctldefault.cgi zrfisheyeset.cgi zrcamctlget.cgi; do ln -s zrcamctlset.cgi "$root/opt/sim/bin/$name"; done
  fi
else
  programs=opt/sim/bin
  [ $raw = 1 ] && programs=web/cgi-bin
  sh scripts/make_device_root.sh --module "$module" --programs "$programs" \
    --record-bytes "$(awk -v m="$module" '$1 == m && $2 != "-" { print $2 }' "$work/modules")" "$root" "$exe" "$emulator" "$sysroot"
  mkdir -p "$root/tmp/sim"
  [ -e "$root/dev/zero" ] || mknod -m 666 "$root/dev/zero" c 1 5  # factory records of modules attached later
  for applet in sed head cp mv tr od awk wc mkdir; do ln -sf busybox "$root/bin/$applet"; done
fi
mkdir -p "$root/web/m" "$root/opt/sim/bin"
awk '$2 != "-" { print $1, $2 }' "$work/modules" > "$root/opt/sim/record-bytes"
cp "$inspector" "$root/opt/sim/bin/zrcamctl-inspect"
if [ $raw = 0 ]; then
  for name in zrcamctlset.cgi zrcamctlapply.cgi zrcamctldefault.cgi zrfisheyeset.cgi zrcamctlget.cgi; do
    cp tools/sim/adapter.cgi "$root/web/cgi-bin/$name"
  done
fi
cp tools/sim/record.cgi "$root/web/cgi-bin/simrecord.cgi"
cp tools/sim/state.cgi "$root/web/cgi-bin/simstate.cgi"

# A module's page: its form is built in the browser from what the device's
# get program answers for the record (tools/sim/page.js: settings, commands
# and edits, with the values the record holds now). Below it, the record
# view, loaded once the page has attached the module.
style='body{font:14px sans-serif;margin:1em 2em} td{padding:0 .8em} fieldset{margin:.5em 0}
label{display:inline-block;margin:2px 1em 2px 0} input[type=text]{width:6em} iframe{width:100%;height:24em;border:1px solid #aaa}'
where=""
[ $box = 0 ] || where=" in the box (the armhf build on an emulated ARM board)"
while read -r code bytes family; do
  cat > "$root/web/m/$code.html" <<HTML
<html><head><title>Camera module $code</title><style>$style</style></head><body>
<p><a href="/">all modules</a></p>
<h2>Camera module $code</h2>
<p>$family, $([ "$bytes" = - ] && echo "no settings record" || echo "record of $bytes bytes"). Opening this page attaches module $code$where.</p>
<form id=settings method=post action="/cgi-bin/zrcamctlset.cgi">
<div id=fields>loading the record...</div>
<input type=hidden name=RetReDir value="/m/$code.html">
<p><input type=submit id=save value="Save settings"></p>
</form>
<iframe id=record></iframe>
<script src="/sim/page.js"></script>
</body></html>
HTML
  echo "<tr><td><a href=\"/m/$code.html\">$code</a></td><td>$family</td><td>$bytes</td></tr>"
done < "$work/modules" > "$work/rows"
mkdir -p "$root/web/sim"
cp tools/sim/page.js "$root/web/sim/page.js"
# The keys posted as checkboxes (1 when posted, 0 when not), "Name<n>" for
# an array's, from the key reference: the one thing about a key the page
# cannot read from the device's answer.
inspect --reference | sed -n 's/^| [^|]* | `\([^`]*\)`.*checkbox:.*/\1/p' | sort -u > "$root/web/sim/checkboxes.txt"
cat > "$root/web/index.html" <<HTML
<html><head><title>zrcamctl simulator</title><style>$style</style></head><body>
<h2>Camera modules</h2>
<p>Started with module $module attached$where. A module's page attaches it and posts to its settings record.</p>
<table><tr><th>code</th><th>family</th><th>record bytes</th></tr>
$(cat "$work/rows")
</table></body></html>
HTML

# Daemon stand-ins: print each signal they get and log it where the box's
# do (/var/run/<daemon>.signals, which simstate.cgi shows). The box has its own.
for daemon in $([ $box = 1 ] || echo zrcamctld vmfd); do
  sh -c 'for s in USR1:10 USR2:12 HUP:1; do
           trap "echo \"[$1 got SIG${s%:*} (${s#*:})]\"; echo ${s#*:} >> $2" "${s%:*}"
         done
         trap "kill \$child; exit 0" TERM
         while :; do sleep 100000 & child=$!; while kill -0 $child 2>/dev/null; do wait $child; done; done' \
    sh "$daemon" "$root/var/run/$daemon.signals" &
  pids="$pids $!"
  echo $! > "$root/var/run/$daemon.pid"
done

echo "$work" > "$root/web/sim-id.txt"
if [ $box = 1 ]; then
  (cd "$root" && find . -mindepth 1 | cpio -o -H newc --quiet -R 0:0) > "$work/overlay.cpio"
  mkfs.ext4 -q -L settings -d build/box/factory "$work/settings.img" 32M > /dev/null
fi
serve() {  # port; fails when the server does not come up there
  if [ $box = 1 ]; then  # qemu exits at once when it cannot have the port
    sh tools/box/boot.sh --disk "$work/settings.img" --port "$1" --module "$module" \
      --overlay "$work/overlay.cpio" build/box/kernel build/box/root.cpio < /dev/null &
    boot=$! server=$! limit=$(($(date +%s) + 600)) pause=1
  else
    env -i PATH=/bin:/usr/bin:/usr/sbin chroot "$root" /bin/busybox httpd -f -p "127.0.0.1:$1" -h /web 2>&1 &
    server=$! limit=$(($(date +%s) + 5)) pause=0.1
  fi
  # This server, not another. Short tries: a connection made while the box
  # boots waits on its user-mode network's retries, not on the server.
  until [ "$(curl -s --max-time 2 "http://127.0.0.1:$1/sim-id.txt")" = "$work" ]; do
    if [ "$(date +%s)" -gt $limit ] || ! kill -0 $server 2>/dev/null; then
      kill $server 2>/dev/null || :
      wait $server || :
      boot=""
      return 1
    fi
    sleep $pause
  done
  pids="$pids $server"
}
# --once without PORT takes the next free port after 8080 (CI shares machines).
until serve "$port"; do
  if [ $once = 0 ] || [ -n "${PORT:-}" ] || [ "$port" -ge 8099 ]; then
    echo "simulate.sh: the server did not start on port $port" >&2
    exit 1
  fi
  port=$((port + 1))
done
[ $box = 1 ] || echo "device root: $root"
echo "module $module attached; serving http://127.0.0.1:$port/"

if [ $once = 0 ]; then
  echo "Ctrl-C stops"
  wait $server || :
  echo "simulate.sh: the server stopped" >&2
  exit 1
fi

# One request per program, each answer as the browser gets it: the
# program's answer must arrive whole, byte for byte, after the status line
# and any header the adapter had to give the server. The device's files are
# read and changed through the server too (simstate.cgi), box or not.
failures=0 state=http://127.0.0.1:$port/cgi-bin/simstate.cgi
request() {  # program, form, what the answer must hold (grep -E)
  echo "---- $1 <- $2"
  curl -sS -i --max-time 60 -d "$2" "http://127.0.0.1:$port/cgi-bin/$1" > "$work/answer" || :
  cat "$work/answer"
  echo
  if ! head -n 1 "$work/answer" | grep -q '^HTTP/1.1 20[04] OK' || ! grep -qE "$3" "$work/answer"; then
    echo "FAILED: expected an answer holding $3"
    failures=$((failures + 1))
  elif ! curl -sf --max-time 60 "$state?answer" > "$work/sent" ||
    ! tail -c "$(wc -c < "$work/sent")" "$work/answer" | cmp -s - "$work/sent"; then
    echo "FAILED: the program's answer did not arrive whole"
    failures=$((failures + 1))
  fi
}
signalled() {  # daemon, signal number (the log may take the box a moment)
  for _ in 1 2 3 4 5 6 7 8 9 10; do
    curl -s --max-time 60 "$state?signals=$1" | grep -qx "$2" && return 0
    sleep 0.5
  done
  echo "FAILED: $1 got no signal $2"
  failures=$((failures + 1))
}
# The return page, or the bare 204 where the family's result rule keeps the
# browser on its page.
request zrcamctlset.cgi "AwbMode=1&WbGainR=40&OsdLang=EN&RetReDir=/m/$module.html" \
  "location\.href=\"/m/$module\.html\";|^HTTP/1\.1 204 OKContent-type: text/html"
signalled zrcamctld 10
echo "record ZrCamCtlConf$module.bin:"
curl -sf --max-time 60 "$state?record=$module" > "$work/record" && od -A d -t x1 "$work/record" || echo "(none)"
# Without a record: the error page, its alert and the way back.
curl -sf --max-time 60 -d '' "$state?remove=$module" > /dev/null
request zrcamctlset.cgi "AwbMode=2" 'alert\("zrcamctlset\.cgi Cgi Func:\[\] return ERROR!!!"\);'
[ ! -s "$work/record" ] || curl -sf --max-time 60 --data-binary "@$work/record" "$state?record=$module" > /dev/null
request zrcamctlapply.cgi "RetReDir=/index.html" 'location\.href="/index\.html";'
request zrcamctldefault.cgi "SaveCfg=YES&RetReDir=/index.html" 'location\.href="/index\.html";'
signalled zrcamctld 12
request zrfisheyeset.cgi "CenterX=400&RetReDir=/index.html" 'location\.href="/index\.html";'
signalled vmfd 12
echo "fish_eye.conf:"
curl -sf --max-time 60 "$state?fisheye"
[ $failures = 0 ] || { echo "$failures failures"; exit 1; }
echo "every program answered through the server"
