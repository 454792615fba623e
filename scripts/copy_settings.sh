#!/bin/sh
# Copies one camera's settings to others, through their own programs:
#
#   sh scripts/copy_settings.sh SOURCE_URL TARGET_URL...
#
# A URL is a device's address (http://10.0.0.5; its programs are under
# /cgi-bin/). The source's settings are read as a form
# (zrcamctlget.cgi?format=form) and posted to each target's zrcamctlset.cgi,
# up to four targets at a time, but only to a target whose attached module
# is the source's: another is refused and left as it is. For each target it
# prints what changed, key by key, from its JSON before and after. Commands
# and edits are never copied. Exits 1 when a target was refused or failed.
# Needs curl and python3.
set -u
[ $# -ge 2 ] || { sed -n '2,/^set/p' "$0" | sed '$d; s/^# \{0,1\}//' >&2; exit 2; }
source=${1%/}
shift
work=$(mktemp -d "${TMPDIR:-/tmp}/copy_settings.XXXXXX")
trap 'rm -rf "$work"' EXIT

# get URL [QUERY] > FILE: the body of the get program's answer. A GET names
# the device itself as its referrer, as the device's pages do.
get() { curl -fsS --max-time 30 -e "$1/" "$1/cgi-bin/zrcamctlget.cgi${2:+?$2}"; }
module() { sed -n 's/^{"module":"\([^"]*\)".*/\1/p' "$1"; }
# The settings that differ between two answers, one line a key.
changes() {
  python3 -c 'import json, sys
a, b = (json.load(open(f))["settings"] for f in sys.argv[1:3])
for key in b:
    if a.get(key) != b[key]:
        print(f"  {key}: {json.dumps(a.get(key))} -> {json.dumps(b[key])}")' "$1" "$2"
}

get "$source" > "$work/source.json" && get "$source" format=form > "$work/source.form" || {
  echo "copy_settings: $source: its settings cannot be read" >&2
  exit 1
}
code=$(module "$work/source.json")
echo "$source: module $code"

copy() {  # target, its number: the report in $work/<number>.out, failure as $work/<number>.failed
  out=$work/$2
  if ! get "$1" > "$out.before"; then
    echo "$1: its settings cannot be read; nothing posted"
  elif [ "$(module "$out.before")" != "$code" ]; then
    echo "$1: module $(module "$out.before"), not the source's $code: refused, nothing posted"
  elif ! curl -fsS --max-time 30 -o /dev/null --data-binary "@$work/source.form" \
      "$1/cgi-bin/zrcamctlset.cgi"; then
    echo "$1: the post failed"
  elif ! get "$1" > "$out.after"; then
    echo "$1: posted, but its settings cannot be read back"
  else
    echo "$1: copied, $(changes "$out.before" "$out.after" | tee "$out.changes" | wc -l) settings changed"
    cat "$out.changes"
    return 0
  fi
  : > "$out.failed"
}

n=0 running=0
for target; do
  n=$((n + 1))
  copy "${target%/}" $n > "$work/$n.out" 2>&1 &
  running=$((running + 1))
  if [ $running -ge 4 ]; then wait; running=0; fi
done
wait
status=0 i=0
while [ $i -lt $n ]; do
  i=$((i + 1))
  cat "$work/$i.out"
  [ ! -e "$work/$i.failed" ] || status=1
done
exit $status
