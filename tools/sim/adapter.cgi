#!/bin/sh
# Simulator only: stands between BusyBox httpd and the real program in
# /opt/sim/bin (same base name, so the program picks the same job).
#
# The programs write their answers for a device server that hands the
# output to the browser as it stands. BusyBox httpd, like any standard CGI
# server, reads the output as headers first: an answer starting with
# "HTTP/" is passed as it is (the bare 204), anything else gets
# "HTTP/1.1 200 OK\r\n" put in front and must go on with header lines. The
# error page does ("Content-type: ..."), but the return page has no header
# at all: its "<html>..." lines would be taken for headers and the browser
# would get an empty 200. So where the answer has no header, this gives the
# server one ("Content-type: text/html" and the blank line) and then the
# answer's bytes unchanged; answers that have their own pass untouched.
#
# Before a set request it keeps a copy of the module's record, so that the
# simulator's record view can show what the request changed. The program's
# answer is kept as /tmp/sim/last-answer, for checking what the browser got.
mkdir -p /tmp/sim  # the box's /tmp is a RAM file system, empty at each boot
# In the box the server's standard error is /dev/null: diagnostics go to the console.
[ -c /dev/console ] && exec 2>/dev/console
answer=/tmp/sim/answer.$$
trap 'rm -f "$answer"' EXIT
name=${0##*/}
if [ "$name" = zrcamctlset.cgi ]; then
  module=$(sed -n 's/^QEF_STR1="...................\(..\).*/\1/p' /proc/driver/qe_basic_conf)
  record=/opt/kfp/etc/ZrConf/ZrCamCtlConf$module.bin
  [ -f "$record" ] && cp "$record" "/tmp/sim/previous$module.bin.$$" &&
    mv -f "/tmp/sim/previous$module.bin.$$" "/tmp/sim/previous$module.bin"
fi
if [ -x /usr/bin/qemu-arm-static ]; then  # the armhf build (simulate.sh --arm)
  /usr/bin/qemu-arm-static -0 "$0" "/opt/sim/bin/$name" > "$answer"
else
  "/opt/sim/bin/$name" > "$answer"
fi
case $(head -c 13 "$answer") in
  HTTP/* | Content-type:) ;;
  *) printf 'Content-type: text/html\r\n\r\n' ;;
esac
cat "$answer"
mv -f "$answer" /tmp/sim/last-answer
