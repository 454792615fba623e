#!/bin/sh
# Builds and runs every test: the host build, the 32-bit ARM build under
# qemu-arm-static, the host build under ASan and UBSan, and the 32-bit ARM
# build on an emulated ARM board (the box).
# Device tests chroot and mount, so this runs as root.
set -eu
cd "$(dirname "$0")/.."
sh scripts/install-deps.sh clang libclang-rt-14-dev clang-format

# Every tracked C and C++ file as the formatter (.clang-format) writes it.
git ls-files -z '*.c' '*.cc' '*.cpp' '*.h' '*.hpp' | xargs -0 clang-format --dry-run -Werror
# The browser test's Chromium and driver; without a browser that test is
# skipped (CTest says so), everything else still runs.
sh scripts/install-deps.sh chromium || echo "NOTE: chromium could not be installed: the browser test will be skipped"
[ -d tests/browser/node_modules/puppeteer-core ] || (cd tests/browser && npm ci --no-audit --no-fund)

jobs=$(nproc 2>/dev/null || echo 2)
export CMAKE_BUILD_PARALLEL_LEVEL="$jobs" CTEST_PARALLEL_LEVEL="$jobs"
# With the box's packages at hand, the armhf transcripts replay natively on
# the ARM kernel in the box stage below; under qemu-arm-static otherwise.
box=1
sh tools/box/fetch.sh || box=0
for preset in host armhf asan; do
  echo "== $preset =="
  if [ $preset = armhf ] && [ $box = 1 ]; then
    cmake --preset armhf && cmake --build --preset armhf
    ctest --preset armhf -E 'Golden\.Replays'
  else
    cmake --workflow --preset "$preset"
  fi
done

# The demo CI runs: one request per program through the simulator's server.
sh scripts/simulate.sh --once

# The box: the armhf build on an emulated ARM board (fetches Debian's armhf
# kernel and busybox the first time; skipped, and reported so, only when
# they cannot be had): the device tests natively on the ARM kernel, the
# named temporaries on JFFS2, the simulator and the browser through the
# device's own server, and power cuts.
echo "== box =="
box_started=$(date +%s)
cmake --workflow --preset box
echo "box stage: $(($(date +%s) - box_started)) s"

# Every fuzz target for a short, bounded run (scripts/fuzz.sh for longer ones).
sh scripts/fuzz.sh 30
