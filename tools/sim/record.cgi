#!/bin/sh
# Simulator only: /cgi-bin/simrecord.cgi?CODE shows the record of camera
# module CODE: what the last set request changed, key by key and byte by
# byte, then every key as the daemon reads it (zrcamctl-inspect).
# /cgi-bin/simrecord.cgi?CODE&attach only attaches it: the module's page
# asks first, then reads the record through the device's get program.
# When another module is attached, it attaches CODE first: rewrites the
# basic configuration and, when the module has no record yet, writes its
# factory record of zeros (sizes in /opt/sim/record-bytes).
mkdir -p /tmp/sim
code=$(printf '%s' "${QUERY_STRING%%&*}" | tr -cd '0-9A-Za-z' | head -c 2)
conf=/proc/driver/qe_basic_conf
attached=$(sed -n 's/^QEF_STR1="...................\(..\).*/\1/p' $conf)
record=/opt/kfp/etc/ZrConf/ZrCamCtlConf$code.bin
if [ -n "$code" ] && [ "$code" != "$attached" ]; then
  sed -i "s/^\(QEF_STR1=\"...................\)../\1$code/" $conf
  bytes=$(sed -n "s/^$code //p" /opt/sim/record-bytes)
  [ -e "$record" ] || [ -z "$bytes" ] || { head -c "$bytes" /dev/zero > "$record.$$" && mv "$record.$$" "$record"; }
fi
inspect() {
  if [ -x /usr/bin/qemu-arm-static ]; then  # the armhf build (simulate.sh --arm)
    /usr/bin/qemu-arm-static /opt/sim/bin/zrcamctl-inspect "$@"
  else
    /opt/sim/bin/zrcamctl-inspect "$@"
  fi
}
if [ "${QUERY_STRING#*&}" = attach ]; then
  printf 'Content-type: text/plain\r\n\r\nmodule %s attached\n' "$code"
  exit 0
fi
html() { sed 's/&/\&amp;/g; s/</\&lt;/g; s/>/\&gt;/g'; }
printf 'Content-type: text/html\r\n\r\n'
printf '<html><head><style>body{font:13px monospace;margin:4px} b{background:#fd8}</style></head><body>\n'
if [ ! -f "$record" ]; then
  echo "<p>module $code: no record $record</p></body></html>"; exit 0
fi
previous=/tmp/sim/previous$code.bin
[ -f "$previous" ] || previous=$record
echo "<p>$record: $(wc -c < "$record") bytes</p><pre>"
echo "last change, key by key (offset key width was -> now):"
inspect --diff "$code" "$previous" "$record" 2>&1 | html
# One byte a line, now and before; shown 16 a row, changed ones marked.
od -v -A d -t x1 "$record" | awk '{for (i = 2; i <= NF; i++) print $i}' > /tmp/sim/now.$$
od -v -A d -t x1 "$previous" | awk '{for (i = 2; i <= NF; i++) print $i}' > /tmp/sim/was.$$
awk 'NR == FNR {was[NR - 1] = $1; next}
     {o = FNR - 1; if (o % 16 == 0) printf "%s%5d:", (o ? "\n" : "\nbytes, changed ones marked:\n"), o
      if (!(o in was) || was[o] == $1) {printf " %s", $1; next}
      printf " <b title=\"was %s\">%s</b>", was[o], $1
      changes = changes sprintf("\n  byte %d: %s -> %s", o, was[o], $1)}
     END {print "\n\nlast change, byte by byte:" (changes == "" ? " none" : changes)}' /tmp/sim/was.$$ /tmp/sim/now.$$
rm -f /tmp/sim/now.$$ /tmp/sim/was.$$
echo
echo "every key (offset key width value):"
inspect "$code" "$record" 2>&1 | html
echo '</pre></body></html>'
