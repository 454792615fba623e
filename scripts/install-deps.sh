#!/bin/sh
# Installs what building and testing need, when it is missing.
set -eu
packages="cmake make g++ libgtest-dev busybox-static qemu-user-static g++-arm-linux-gnueabihf $*"
missing=""
for p in $packages; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing="$missing $p"
done
if [ -n "$missing" ]; then
  echo "installing:$missing"
  export DEBIAN_FRONTEND=noninteractive
  apt-get update -qq
  # shellcheck disable=SC2086
  apt-get install -y -qq $missing >/dev/null
fi
