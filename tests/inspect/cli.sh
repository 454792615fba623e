#!/bin/sh
# cli.sh CHECK SOURCE_DIR WORK_DIR INSPECTOR... (behind its emulator, if any)
#   keys_md:   docs/keys.md is what --reference writes
#   bad_input: each case exits 2, one line on stderr naming the trouble, nothing on stdout
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
head -c 130 /dev/zero > record130; head -c 129 /dev/zero > record129; : > empty
fail=0
while read -r expect args; do
  "$@" $args > out 2> err
  rc=$?
  [ $rc -eq 2 ] && [ "$(wc -l < err)" -eq 1 ] && grep -q "$expect" err && [ ! -s out ] && continue
  echo "zrcamctl-inspect $args: exit $rc, not 2 with one line matching '$expect':"; cat err; fail=1
done <<'CASES'
unknown.module.code.*ZZ        ZZ record130
unknown.module.code            0 record130
unknown.module.code            --json 0OO record130
no.settings.family             1Y record130
record129:.129.bytes,.not.the.130-byte  0O record129
empty:.0.bytes                 0O empty
longer.than.the.108-byte       0F record130
missing:.No.such.file          0O missing
\.:.Is.a.directory             0O .
missing:.No.such.file          --diff 0O record130 missing
record129:.129.bytes           --json --diff 0O record130 record129
usage:                         
usage:                         --json
usage:                         0O
usage:                         0O record130 record130
usage:                         --diff 0O record130
usage:                         --bogus 0O record130
usage:                         --reference 0O
CASES
exit $fail
