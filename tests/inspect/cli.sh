#!/bin/sh
# The inspector's command line. cli.sh CHECK SOURCE_DIR WORK_DIR INSPECTOR...
# (the inspector behind its emulator, if any)
#   bad_input: each bad input or usage exits 2 with one line on standard
#              error and nothing on standard output
#   keys_md:   docs/keys.md is what --reference writes
set -u
check=$1 src=$2 work=$3/$1
shift 3
mkdir -p "$work" && cd "$work" || exit 1
fail=0

if [ "$check" = keys_md ]; then
  "$@" --reference > keys.md || { echo "zrcamctl-inspect --reference failed"; exit 1; }
  if ! cmp -s keys.md "$src/docs/keys.md"; then
    diff "$src/docs/keys.md" keys.md | head -20
    echo "docs/keys.md is out of date; regenerate it from the source tree with"
    echo "  cmake --build --preset host --target zrcamctl-inspect && build/host/zrcamctl-inspect --reference > docs/keys.md"
    exit 1
  fi
  exit 0
fi

head -c 130 /dev/zero > record130
head -c 129 /dev/zero > record129
: > empty
# expected words on standard error, then the arguments
while read -r expect args; do
  # shellcheck disable=SC2086 # the arguments are split on purpose
  "$@" $args > out 2> err
  rc=$?
  if [ $rc -ne 2 ] || [ "$(wc -l < err)" -ne 1 ] || ! grep -q "$expect" err || [ -s out ]; then
    echo "zrcamctl-inspect $args: exit $rc, expected 2 and one line with '$expect'; standard error:"
    cat err
    fail=1
  fi
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
