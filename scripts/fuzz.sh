#!/bin/sh
# Builds the libFuzzer targets (clang, ASan, UBSan) and runs each, as many
# side by side as there are processors:
#   scripts/fuzz.sh [SECONDS_PER_TARGET]      each for a bounded time (default 60)
#   scripts/fuzz.sh --runs N [--within SECONDS] [TARGET...]
#                                             each to N executions; with --within,
#                                             none runs past SECONDS from the start
#                                             (a target started late gets what is
#                                             left, one started after it none)
# TARGETs (form, handlers, inspect, product_code, tcfg) choose the targets and
# the order they start in; all of them by default. Each target's output ends
# with "TARGET: runs R in S s", the executions and wall time of its run.
# Seeds come from tests/fuzz/corpus/<target>. An input that makes a target
# fail is kept in tests/fuzz/regressions/<target> (commit it with the fix);
# every input kept there is replayed before the target is fuzzed, and any
# that still fails fails the run.
set -eu
cd "$(dirname "$0")/.."

usage() {
  echo "usage: sh scripts/fuzz.sh [SECONDS_PER_TARGET] | --runs N [--within SECONDS] [TARGET...]" >&2
  exit 2
}
number() { case $1 in "" | *[!0-9]*) usage ;; esac; }
seconds=60 runs="" within=""
while [ $# -gt 0 ]; do
  case $1 in
    --runs) [ $# -ge 2 ] || usage; number "$2"; runs=$2; shift 2 ;;
    --within) [ $# -ge 2 ] || usage; number "$2"; within=$2; shift 2 ;;
    -*) usage ;;
    *[!0-9]*) break ;;
    *) [ -z "$runs" ] || usage; seconds=$1; shift ;;
  esac
done
[ -n "$runs" ] || [ -z "$within" ] || usage
[ -z "$runs" ] || [ "$runs" -gt 0 ] || usage
for target in "$@"; do
  [ -f "tests/fuzz/${target}_fuzz.cpp" ] || { echo "no fuzz target $target" >&2; exit 2; }
done

sh scripts/install-deps.sh clang libclang-rt-14-dev
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j "$(nproc 2>/dev/null || echo 2)"

work=$(mktemp -d /tmp/zrcamctl-fuzz.XXXXXX)
trap 'rm -rf "$work"' EXIT
started_at=$(date +%s)

# fuzz_target FUZZER: replays the target's kept inputs, then fuzzes it;
# fails when a kept input still fails or the run finds a failing input
# (then kept in tests/fuzz/regressions/<target>).
fuzz_target() {
  fuzzer=$1 target=${1##*/fuzz_}
  kept=tests/fuzz/regressions/$target
  if [ -n "$runs" ]; then
    limits="-runs=$runs" what="$runs runs"
    if [ -n "$within" ]; then
      left=$((within - ($(date +%s) - started_at)))
      if [ "$left" -le 0 ]; then
        echo "== $target: not run, the $within s were up =="
        return 0
      fi
      limits="$limits -max_total_time=$left" what="$what or ${left}s"
    fi
  else
    limits="-max_total_time=$seconds" what="${seconds}s"
  fi
  echo "== $target: $what =="
  if [ -n "$(ls -A "$kept" 2>/dev/null)" ]; then
    # Inputs given as files are each run once; nothing is fuzzed.
    if ! "$fuzzer" -close_fd_mask=1 -artifact_prefix="$work/replay-$target-" "$kept"/* \
        >"$work/replay-$target.log" 2>&1; then
      grep -E '^(Running|==|SUMMARY)' "$work/replay-$target.log"
      echo "regression input fails: $kept"
      return 1
    fi
    grep -E '^Executed' "$work/replay-$target.log"
  fi
  mkdir -p "$work/$target"
  cp tests/fuzz/corpus/"$target"/* "$work/$target"/ 2>/dev/null || true
  from=$(date +%s)
  # Handlers report on standard error; keep libFuzzer's own lines only.
  # shellcheck disable=SC2086
  "$fuzzer" $limits -close_fd_mask=1 -print_final_stats=1 \
    -artifact_prefix="$work/found-$target-" "$work/$target" >"$work/fuzz-$target.log" 2>&1 || true
  to=$(date +%s)
  grep -E '^(stat::number_of_executed_units|stat::average_exec_per_sec|==|SUMMARY|Done|Slowest)' \
    "$work/fuzz-$target.log" || true
  done_runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$work/fuzz-$target.log")
  echo "$target: runs ${done_runs:-?} in $((to - from)) s"
  # An input that once took over 10 s (libFuzzer's slow-unit) did not fail;
  # on a busy machine it is mostly the machine that stalled. A hang fails
  # as a timeout.
  for slow in "$work/found-$target-slow-unit-"*; do
    [ -e "$slow" ] || continue
    echo "slow once, not a failure, not kept: ${slow##*/found-"$target"-}"
    rm -f "$slow"
  done
  if ls "$work/found-$target-"* >/dev/null 2>&1; then
    mkdir -p "$kept"
    for found in "$work/found-$target-"*; do mv "$found" "$kept/${found##*/found-"$target"-}"; done
    echo "fuzz target $target found a failing input, kept in $kept:"
    ls "$kept"
    return 1
  fi
}

if [ $# -eq 0 ]; then
  set -- build/fuzz/tests/fuzz/fuzz_*
else
  for target in "$@"; do
    shift
    set -- "$@" "build/fuzz/tests/fuzz/fuzz_$target"
  done
fi

# As many targets side by side as there are processors; the next one starts
# as soon as one is done, whose output is then printed.
jobs=$(nproc 2>/dev/null || echo 2)
status=0 running=""
reap() {
  still=""
  for one in $running; do
    name=${one%%:*}
    if [ -f "$work/$name.status" ]; then
      wait "${one#*:}" || true
      cat "$work/$name.out"
      [ "$(cat "$work/$name.status")" = 0 ] || status=1
    else
      still="$still $one"
    fi
  done
  running=$still
}
for fuzzer in "$@"; do
  while [ "$(echo "$running" | wc -w)" -ge "$jobs" ]; do
    sleep 1
    reap
  done
  name=${fuzzer##*/fuzz_}
  {
    code=0
    fuzz_target "$fuzzer" >"$work/$name.out" 2>&1 || code=$?
    # Whole once it is there: reap reads it as soon as it exists.
    echo "$code" >"$work/$name.code" && mv "$work/$name.code" "$work/$name.status"
  } &
  running="$running $name:$!"
done
while [ -n "$running" ]; do
  sleep 1
  reap
done
exit $status
