#!/bin/sh
# Builds the libFuzzer targets (clang, ASan, UBSan) and runs each for a
# bounded time: scripts/fuzz.sh [SECONDS_PER_TARGET] (default 60).
# Seeds come from tests/fuzz/corpus/<target>. An input that makes a target
# fail is kept in tests/fuzz/regressions/<target> (commit it with the fix);
# every input kept there is replayed before the target is fuzzed, and any
# that still fails stops the run.
set -eu
cd "$(dirname "$0")/.."
sh scripts/install-deps.sh clang libclang-rt-14-dev
seconds=${1:-60}
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j "$(nproc 2>/dev/null || echo 2)"

work=$(mktemp -d /tmp/zrcamctl-fuzz.XXXXXX)
trap 'rm -rf "$work"' EXIT
for fuzzer in build/fuzz/tests/fuzz/fuzz_*; do
  target=${fuzzer##*/fuzz_}
  kept=tests/fuzz/regressions/$target
  echo "== $target: ${seconds}s =="
  if [ -n "$(ls -A "$kept" 2>/dev/null)" ]; then
    # Inputs given as files are each run once; nothing is fuzzed.
    if ! "$fuzzer" -close_fd_mask=1 -artifact_prefix="$work/replay-" "$kept"/* \
        >"$work/replay.log" 2>&1; then
      grep -E '^(Running|==|SUMMARY)' "$work/replay.log"
      echo "regression input fails: $kept"
      exit 1
    fi
    grep -E '^Executed' "$work/replay.log"
  fi
  mkdir -p "$work/$target"
  cp tests/fuzz/corpus/"$target"/* "$work/$target"/ 2>/dev/null || true
  # Handlers report on standard error; keep libFuzzer's own lines only.
  "$fuzzer" -max_total_time="$seconds" -close_fd_mask=1 -print_final_stats=1 \
    -artifact_prefix="$work/found-" "$work/$target" 2>&1 | grep -E '^(stat::number_of_executed_runs|==|SUMMARY|Done)' || true
  if ls "$work"/found-* >/dev/null 2>&1; then
    mkdir -p "$kept"
    for found in "$work"/found-*; do mv "$found" "$kept/${found##*/found-}"; done
    echo "fuzz target $target found a failing input, kept in $kept:"
    ls "$kept"
    exit 1
  fi
done
