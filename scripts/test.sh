#!/bin/sh
# Builds and runs every test: the host build, the 32-bit ARM build under
# qemu-arm-static, the host build under ASan and UBSan, and the 32-bit ARM
# build on an emulated ARM board (the box) with power cuts on its three
# disks, then a short run of each fuzz target. Each stage's time is printed at the end.
# Device tests chroot and mount, so this runs as root.
set -eu
cd "$(dirname "$0")/.."

times=""
started=$(date +%s)
# stage NAME COMMAND...: runs the command, keeps its time for the summary.
stage() {
  name=$1
  shift
  echo "== $name =="
  at=$(date +%s)
  "$@"
  times="$times$(printf '%-10s %5d s' "$name" $(($(date +%s) - at)))
"
}
summary() {
  printf '\n== times ==\n%s%-10s %5d s\n' "$times" total $(($(date +%s) - started))
}
trap summary EXIT

setup() {
  sh scripts/install-deps.sh clang libclang-rt-14-dev clang-format
  # Every tracked C and C++ file as the formatter (.clang-format) writes it.
  git ls-files -z '*.c' '*.cc' '*.cpp' '*.h' '*.hpp' | xargs -0 clang-format --dry-run -Werror
  # The browser test's Chromium and driver; without a browser that test is
  # skipped (CTest says so), everything else still runs.
  sh scripts/install-deps.sh chromium || echo "NOTE: chromium could not be installed: the browser test will be skipped"
  [ -d tests/browser/node_modules/puppeteer-core ] || (cd tests/browser && npm ci --no-audit --no-fund)
  # The box's kernel and busybox (Debian's armhf packages), fetched once.
  sh tools/box/fetch.sh || echo "NOTE: the box's packages could not be had: the box stage will be skipped"
}

jobs=$(nproc 2>/dev/null || echo 2)
export CMAKE_BUILD_PARALLEL_LEVEL="$jobs" CTEST_PARALLEL_LEVEL="$jobs"

stage setup setup
# The host build, then the armhf build's tests under qemu-arm-static; the
# transcripts' sample replays against the armhf executable under
# qemu-arm-static by the host's harness (the host replays every case; the
# ARM harness replays the sample again in the box). Every case under
# qemu-arm-static takes some 150 s more: ctest --preset armhf-transcripts.
armhf() {
  cmake --workflow --preset armhf
  # One more than the processors: each case waits on files and processes.
  ZRCAMCTL_GOLDEN_SAMPLE=1 ctest --preset armhf-transcripts -j $((jobs + 1))
}
stage host cmake --workflow --preset host
stage armhf armhf
stage asan cmake --workflow --preset asan

# The demo CI runs: one request per program through the simulator's server.
stage simulate sh scripts/simulate.sh --once

# The box: the armhf build on an emulated ARM board (skipped, and reported
# so, only when its packages cannot be had): the device tests natively on
# the ARM kernel, the named temporaries on JFFS2, the simulator and the
# browser through the device's own server.
stage box cmake --workflow --preset box
# Five power cuts on each of the box's three disks, a line each (77: no box).
powercut() { sh scripts/powercut.sh 5 --disk all || [ $? = 77 ]; }
stage powercut powercut

# Every fuzz target for a short, bounded run (scripts/fuzz.sh for longer ones).
stage fuzz sh scripts/fuzz.sh 5
