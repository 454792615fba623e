#!/bin/sh
# Builds and runs every test: the host build, the 32-bit ARM build under
# qemu-arm-static, and the host build under ASan and UBSan.
# Device tests chroot and mount, so this runs as root.
set -eu
cd "$(dirname "$0")/.."
sh scripts/install-deps.sh clang libclang-rt-14-dev

jobs=$(nproc 2>/dev/null || echo 2)
for preset in host armhf asan; do
  echo "== $preset =="
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset" -j "$jobs"
  ctest --preset "$preset" -j "$jobs"
done

# Every fuzz target for a short, bounded run (scripts/fuzz.sh for longer ones).
sh scripts/fuzz.sh 30
