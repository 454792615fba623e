#!/bin/sh
# scripts/copy_settings.sh between two simulated devices on 127.0.0.1: settings
# copied, the change reported; a target with another module refused, left as it was.
set -eu
here=$(cd "$(dirname "$0")/../.." && pwd) work=$(mktemp -d /tmp/zrcamctl-copy.XXXXXX) pids=""
trap 'for p in $pids; do kill $p 2>/dev/null || :; done; wait; rm -rf "$work"' EXIT
p=$((18000 + $$ % 1000 * 2)) i=0
for port in $p $((p + 1)); do PORT=$port sh "$here/scripts/simulate.sh" > "$work/$port" 2>&1 & pids="$pids $!"; done
until grep -q serving "$work/$p" && grep -q serving "$work/$((p + 1))"; do
  i=$((i + 1)) && [ $i -lt 240 ] && sleep 0.5 || { cat "$work"/1*; exit 1; }
done
S=http://127.0.0.1:$p T=http://127.0.0.1:$((p + 1))
get() { curl -fsS -e "$1/" "$1/cgi-bin/zrcamctlget.cgi"; }
copy() { if sh "$here/scripts/copy_settings.sh" "$S" "$T" > "$work/out"; then echo 0; else echo 1; fi; }
curl -fsS -o /dev/null -d 'AwbMode=2&WbGainR=77&OsdLang=X%26Y' "$S/cgi-bin/zrcamctlset.cgi"
[ "$(copy)" = 0 ]
grep -qx "$T: copied, 3 settings changed" "$work/out"
grep -qx '  OsdLang: "" -> "X&Y"' "$work/out"
[ "$(get "$S" | sed 's/,"commands".*//')" = "$(get "$T" | sed 's/,"commands".*//')" ]
curl -fsS -o /dev/null "$T/cgi-bin/simrecord.cgi?0y"  # the target now has another module
get "$T" > "$work/before"
[ "$(copy)" = 1 ]
grep -qx "$T: module 0y, not the source's 0J: refused, nothing posted" "$work/out"
get "$T" | cmp - "$work/before" && echo "copied, and refused where the module differs"
