#!/bin/sh
# The browser test: headless Chromium (Debian's) driven by puppeteer-core
# against the simulator. Installs both when missing; exits 77 (skipped) only
# when no browser can be installed, or with --box when the box cannot be
# made (simulate.sh --box).  run.sh [--box] [OUTPUT_DIR]
set -eu
box=""
[ "${1:-}" != --box ] || { box=--box; shift; }
here=$(cd "$(dirname "$0")" && pwd)
if [ ! -x /usr/bin/chromium ]; then
  sh "$here/../../scripts/install-deps.sh" chromium || :
fi
if [ ! -x /usr/bin/chromium ]; then
  echo "SKIPPED: no browser: Debian's chromium could not be installed"
  exit 77
fi
[ -d "$here/node_modules/puppeteer-core" ] || (cd "$here" && npm ci --no-audit --no-fund)
mkdir -p "${1:-.}"
exec node "$here/simulator.test.cjs" "${1:-.}" $box
