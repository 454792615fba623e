#!/bin/sh
# Inside the box: the armhf device tests, natively on the ARM kernel, in as
# many shards as the board has processors (each shard its own device root),
# those that time a request alone; then, with --jffs2, the tests FILTER
# names again with the device roots' /opt/kfp on JFFS2 on the kernel's
# simulated NAND, a file system without unnamed files, so saves take named
# temporaries (one shard, since the roots share the one flash).
#   device_tests.sh BUILD_DIR [GTEST_FILTER] [--jffs2 FILTER]
set -u
here=$(cd "$(dirname "$0")" && pwd)
build=$1
shift
export ZRCAMCTL_EMULATOR=  # natively: no qemu-arm-static
# Of the transcripts, each file's first case of each rule and first one-key
# line of each number of changed bytes: the host, and the host's harness
# with the armhf executable under qemu-arm-static, replay them all.
export ZRCAMCTL_GOLDEN_SAMPLE=1
filter='*' jffs2=""
[ $# -eq 0 ] || [ "$1" = --jffs2 ] || { filter=$1; shift; }
[ "${1:-}" != --jffs2 ] || jffs2=$2
cd "$build/tests"
status=0 run=0
run_shards() {  # count, filter: the shards side by side, then their summaries
  i=0
  while [ $i -lt "$1" ]; do
    GTEST_TOTAL_SHARDS=$1 GTEST_SHARD_INDEX=$i ./device_tests --gtest_filter="$2" \
      > /tmp/run$run.shard$i.log 2>&1 &
    eval "pid$i=\$!"
    i=$((i + 1))
  done
  i=0
  while [ $i -lt "$1" ]; do
    eval "wait \$pid$i" || { status=1; tail -n 60 /tmp/run$run.shard$i.log; }
    grep -E '^\[  (FAILED|PASSED)  \]|Failure' /tmp/run$run.shard$i.log
    i=$((i + 1))
  done
  run=$((run + 1))
}
# The tests that time a request (an answer within a second, a lock's wait,
# a form's parsing against another's) run alone, after the shards.
timed='HostileInput.*:Reliability.*'
shards=$(nproc)
if [ "$filter" = '*' ]; then
  run_shards "$shards" "*-$timed"
  run_shards 1 "$timed"
else
  run_shards "$shards" "$filter"
fi
if [ -n "$jffs2" ]; then
  echo "device tests with /opt/kfp on JFFS2: $jffs2"
  ZRCAMCTL_ROOT_SCRIPT=$here/jffs2_root.sh
  export ZRCAMCTL_ROOT_SCRIPT
  run_shards 1 "$jffs2"
fi
# The transcript cases replayed: those of every file whose replay passed
# (each replay says how many it replayed of its file).
cases=$(awk '/^transcript .* cases replayed$/ { n[$2] = $3 }
  /^\[       OK \] Transcripts\/Golden.Replays\// { f = $4; sub(/.*\//, "", f); gsub(/_/, "-", f); ok[f ":"] = 1 }
  END { for (f in ok) s += n[f]; print s + 0 }' /tmp/run*.shard*.log)
echo "device tests on $(uname -m) $(uname -r): status $status; transcript cases replayed: $cases"
exit $status
