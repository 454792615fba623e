#!/bin/sh
# Inside the box: the armhf device tests, natively on the ARM kernel: those
# that time a request alone, then the others in as many shards as the board
# has processors (each shard its own device root); beside them, with
# --jffs2, the tests FILTER names again with the device roots' /opt/kfp on
# JFFS2 on the kernel's simulated NAND, a file system without unnamed files,
# so saves take named temporaries (one shard, since the roots share the one
# flash).
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
status=0 run=0 started=""
start() {  # count, filter[, root script]: the shards, side by side in the background
  i=0
  while [ $i -lt "$1" ]; do
    log=/tmp/run$run.shard$i.log
    (if [ -n "${3:-}" ]; then export ZRCAMCTL_ROOT_SCRIPT="$3"; fi
      GTEST_TOTAL_SHARDS=$1 GTEST_SHARD_INDEX=$i exec ./device_tests --gtest_filter="$2") > $log 2>&1 &
    started="$started $!:$log"
    i=$((i + 1))
  done
  run=$((run + 1))
}
finish() {  # waits for every shard started, then says how each ended
  for s in $started; do
    wait "${s%%:*}" || { status=1; tail -n 60 "${s#*:}"; }
    grep -E '^\[  (FAILED|PASSED)  \]|Failure' "${s#*:}"
  done
  started=""
}
# The tests that time a request (an answer within a second, a lock's wait,
# a form's parsing against another's, fifty saves at once) run alone, first,
# on the board as it booted; the shards were seen to slow them twofold.
timed='HostileInput.*:Reliability.*'
if [ "$filter" = '*' ]; then
  start 1 "$timed"
  finish
  start "$(nproc)" "*-$timed"
else
  start "$(nproc)" "$filter"
fi
# The JFFS2 pass beside the shards: one process, on the one flash.
if [ -n "$jffs2" ]; then
  echo "device tests with /opt/kfp on JFFS2: $jffs2"
  start 1 "$jffs2" "$here/jffs2_root.sh"
fi
finish
# The transcript cases replayed: those of every file whose replay passed
# (each replay says how many it replayed of its file).
cases=$(awk '/^transcript .* cases replayed$/ { n[$2] = $3 }
  /^\[       OK \] Transcripts\/Golden.Replays\// { f = $4; sub(/.*\//, "", f); gsub(/_/, "-", f); ok[f ":"] = 1 }
  END { for (f in ok) s += n[f]; print s + 0 }' /tmp/run*.shard*.log)
echo "device tests on $(uname -m) $(uname -r): status $status; transcript cases replayed: $cases"
exit $status
