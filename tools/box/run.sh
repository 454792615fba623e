#!/bin/sh
# Runs a command inside the box and answers with its exit status:
#   run.sh [boot.sh options] -- COMMAND [ARG...]
# The project's directory is shared with the box at the same path (9p), so
# the host's build trees and sources are where their paths say; COMMAND
# runs there as root, its output on the console (this script's output).
# Exits 77 when the box's packages cannot be had.
set -eu
project=$(cd "$(dirname "$0")/../.." && pwd)
cd "$project"
options=""
while [ $# -gt 0 ] && [ "$1" != -- ]; do options="$options $1"; shift; done
[ $# -gt 1 ] || { echo "usage: run.sh [boot.sh options] -- COMMAND [ARG...]" >&2; exit 2; }
shift
sh tools/box/prepare.sh || exit $?
jobs=build/box/jobs
mkdir -p "$jobs"
job=$(mktemp "$jobs/job.XXXXXX")
trap 'rm -f "$job" "$job.status"' EXIT
{
  echo "cd '$project'"
  for arg; do printf "'%s' " "$(printf '%s' "$arg" | sed "s/'/'\\\\''/g")"; done
  echo
  echo "echo \$? > '$project/$job.status'"
} > "$job"
# A throwaway copy of the settings partition: a run changes nothing kept.
cp build/box/settings.img "$job.img"
trap 'rm -f "$job" "$job.status" "$job.img"' EXIT
# shellcheck disable=SC2086
timeout 3000 sh tools/box/boot.sh --disk "$job.img" --memory 512 $options --share "$project" \
  --run "$project/$job" build/box/kernel build/box/root.cpio </dev/null
[ -f "$job.status" ] || { echo "run.sh: the box stopped before the command finished" >&2; exit 1; }
exit "$(cat "$job.status")"
