#!/bin/sh
# cli.sh CHECK SOURCE_DIR WORK_DIR INSPECTOR... (behind its emulator, if any)
#   keys_md:   docs/keys.md is what --reference writes
#   bad_input: each case exits 2, one line on stderr naming the trouble, nothing on stdout
#   decode:    a record's keys and values, as text, JSON and a diff
set -u
check=$1 src=$2 work=$3/$1
shift 3
mkdir -p "$work" && cd "$work" || exit 1
if [ "$check" = keys_md ]; then
  "$@" --reference > keys.md && cmp -s keys.md "$src/docs/keys.md" && exit 0
  diff "$src/docs/keys.md" keys.md | head -20
  echo "docs/keys.md is out of date; regenerate it in the source tree with"
  echo "  cmake --build --preset host --target zrcamctl-inspect && build/host/zrcamctl-inspect --reference > docs/keys.md"
  exit 1
fi
if [ "$check" = decode ]; then  # a 0J record as text, as JSON and against zeros, as recorded
  head -c 108 /dev/zero > zeros
  { head -c 6 zeros; printf '\064\022'; head -c 6 zeros; printf '\001'; head -c 66 zeros; printf 'E\377"'; head -c 24 zeros; } > record
  { "$@" 0J record; "$@" --json 0J record; "$@" --diff 0J zeros record; echo "exit $?"; } > got 2>&1
  cmp -s got "$src/tests/inspect/data/decode_0J.out" && exit 0
  diff "$src/tests/inspect/data/decode_0J.out" got; exit 1
fi
head -c 130 /dev/zero > record130; head -c 129 /dev/zero > record129; : > empty
fail=0
while read -r expect args; do
  [ "$expect" = "#" ] && continue
  "$@" $args < /dev/null > out 2> err
  rc=$?
  [ $rc -eq 2 ] && [ "$(wc -l < err)" -eq 1 ] && grep -q "$expect" err && [ ! -s out ] && continue
  echo "zrcamctl-inspect $args: exit $rc, not 2 with one line matching '$expect':"; cat err; fail=1
done < "$src/tests/inspect/data/bad_input.cases"
exit $fail
