#!/bin/sh
# Simulator only: /cgi-bin/simrecord.cgi?CODE shows the record of camera
# module CODE as bytes, those that the last set request changed marked.
# When another module is attached, it attaches CODE first: rewrites the
# basic configuration and, when the module has no record yet, writes its
# factory record of zeros (sizes in /opt/sim/record-bytes).
code=$(printf '%s' "$QUERY_STRING" | tr -cd '0-9A-Za-z' | head -c 2)
conf=/proc/driver/qe_basic_conf
attached=$(sed -n 's/^QEF_STR1="...................\(..\).*/\1/p' $conf)
record=/opt/kfp/etc/ZrConf/ZrCamCtlConf$code.bin
if [ -n "$code" ] && [ "$code" != "$attached" ]; then
  sed -i "s/^\(QEF_STR1=\"...................\)../\1$code/" $conf
  bytes=$(sed -n "s/^$code //p" /opt/sim/record-bytes)
  [ -e "$record" ] || [ -z "$bytes" ] || { head -c "$bytes" /dev/zero > "$record.new" && mv "$record.new" "$record"; }
fi
printf 'Content-type: text/html\r\n\r\n'
printf '<html><head><style>body{font:13px monospace;margin:4px} b{background:#fd8}</style></head><body>\n'
if [ ! -f "$record" ]; then
  echo "<p>module $code: no record $record</p></body></html>"; exit 0
fi
previous=/tmp/sim/previous$code.bin
[ -f "$previous" ] || previous=$record
echo "<p>$record: $(wc -c < "$record") bytes; marked: changed by the last set request</p><pre>"
# One byte a line, now and before; shown 16 a row, changed ones marked.
od -v -A d -t x1 "$record" | awk '{for (i = 2; i <= NF; i++) print $i}' > /tmp/sim/now.$$
od -v -A d -t x1 "$previous" | awk '{for (i = 2; i <= NF; i++) print $i}' > /tmp/sim/was.$$
awk 'NR == FNR {was[NR - 1] = $1; next}
     {o = FNR - 1; if (o % 16 == 0) printf "%s%5d:", (o ? "\n" : ""), o
      if (!(o in was) || was[o] == $1) {printf " %s", $1; next}
      printf " <b title=\"was %s\">%s</b>", was[o], $1
      changes = changes sprintf("\n  byte %d: %s -> %s", o, was[o], $1)}
     END {print "\n\nlast change:" (changes == "" ? " none" : changes)}' /tmp/sim/was.$$ /tmp/sim/now.$$
rm -f /tmp/sim/now.$$ /tmp/sim/was.$$
echo '</pre></body></html>'
