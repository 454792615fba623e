#!/bin/sh
# Builds the libFuzzer targets (clang, ASan, UBSan) and runs each for a
# bounded time: scripts/fuzz.sh [SECONDS_PER_TARGET] (default 60).
# Seeds come from tests/fuzz/corpus/<target>; inputs that once crashed are
# kept in tests/fuzz/regressions/<target> and replayed first.
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
  echo "== $target: ${seconds}s =="
  if [ -d "tests/fuzz/regressions/$target" ]; then
    "$fuzzer" tests/fuzz/regressions/"$target"/* >/dev/null 2>&1 || {
      echo "regression input fails: tests/fuzz/regressions/$target"; exit 1; }
  fi
  mkdir -p "$work/$target"
  cp tests/fuzz/corpus/"$target"/* "$work/$target"/ 2>/dev/null || true
  # Handlers report on standard error; keep libFuzzer's own lines only.
  "$fuzzer" -max_total_time="$seconds" -close_fd_mask=1 -print_final_stats=1 \
    -artifact_prefix="$work/" "$work/$target" 2>&1 | grep -E '^(stat::number_of_executed_runs|==|SUMMARY|Done)' || true
  if ls "$work"/crash-* "$work"/leak-* "$work"/timeout-* >/dev/null 2>&1; then
    echo "fuzz target $target found a failing input:"; ls "$work"/crash-* "$work"/leak-* "$work"/timeout-* 2>/dev/null
    exit 1
  fi
done
