#!/bin/sh
# Builds the libFuzzer targets (clang, ASan, UBSan) and runs each for a
# bounded time, as many side by side as there are processors:
# scripts/fuzz.sh [SECONDS_PER_TARGET] (default 60).
# Seeds come from tests/fuzz/corpus/<target>. An input that makes a target
# fail is kept in tests/fuzz/regressions/<target> (commit it with the fix);
# every input kept there is replayed before the target is fuzzed, and any
# that still fails fails the run.
set -eu
cd "$(dirname "$0")/.."
sh scripts/install-deps.sh clang libclang-rt-14-dev
seconds=${1:-60}
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j "$(nproc 2>/dev/null || echo 2)"

work=$(mktemp -d /tmp/zrcamctl-fuzz.XXXXXX)
trap 'rm -rf "$work"' EXIT
# fuzz_target FUZZER: replays the target's kept inputs, then fuzzes it;
# fails when a kept input still fails or the run finds a failing input
# (then kept in tests/fuzz/regressions/<target>).
fuzz_target() {
  fuzzer=$1 target=${1##*/fuzz_}
  kept=tests/fuzz/regressions/$target
  echo "== $target: ${seconds}s =="
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
  # Handlers report on standard error; keep libFuzzer's own lines only.
  "$fuzzer" -max_total_time="$seconds" -close_fd_mask=1 -print_final_stats=1 \
    -artifact_prefix="$work/found-$target-" "$work/$target" 2>&1 |
    grep -E '^(stat::number_of_executed_runs|==|SUMMARY|Done)' || true
  if ls "$work/found-$target-"* >/dev/null 2>&1; then
    mkdir -p "$kept"
    for found in "$work/found-$target-"*; do mv "$found" "$kept/${found##*/found-$target-}"; done
    echo "fuzz target $target found a failing input, kept in $kept:"
    ls "$kept"
    return 1
  fi
}

# As many targets side by side as there are processors, each one's output
# printed when it is done.
jobs=$(nproc 2>/dev/null || echo 2)
status=0
set -- build/fuzz/tests/fuzz/fuzz_*
while [ $# -gt 0 ]; do
  started=""
  while [ $# -gt 0 ] && [ "$(echo $started | wc -w)" -lt "$jobs" ]; do
    fuzz_target "$1" > "$work/${1##*/fuzz_}.out" 2>&1 &
    started="$started ${1##*/fuzz_}:$!"
    shift
  done
  for one in $started; do
    wait "${one#*:}" || status=1
    cat "$work/${one%%:*}.out"
  done
done
exit $status
