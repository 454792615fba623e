#!/bin/sh
# Builds and runs every test: the host build, the 32-bit ARM build under
# qemu-arm-static, and the host build under ASan and UBSan.
# Device tests chroot and mount, so this runs as root.
set -eu
cd "$(dirname "$0")/.."
sh scripts/install-deps.sh clang libclang-rt-14-dev

jobs=$(nproc 2>/dev/null || echo 2)
export CMAKE_BUILD_PARALLEL_LEVEL="$jobs" CTEST_PARALLEL_LEVEL="$jobs"
for preset in host armhf asan; do
  echo "== $preset =="
  cmake --workflow --preset "$preset"
done

# Every fuzz target for a short, bounded run (scripts/fuzz.sh for longer ones).
sh scripts/fuzz.sh 30
