#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# hunt.sh <hunting program> <seconds> <folder> [<kept>]: plays the program's seeds, then hunts for as
# long. What broke the library is left in the folder, beside the log; <kept> is for what leads to
# something new, which is thrown away otherwise. Prints how many inputs were tried, how much of the
# library they reached, and how many broke it; fails when one did.
set -euo pipefail
export LC_ALL=C  # logs hold any bytes
program=$(realpath "$1") seconds=$2 found=$(realpath -m "$3") kept=${4:+$(realpath -m "$4")}
here=$(realpath "$(dirname "$0")")
target=${program##*/hunt_}
log=$found/$target.log

# Scratch files in memory, where the machine has such a place.
scratch=$(mktemp -d -p /dev/shm 2>/dev/null || mktemp -d)
trap 'rm -rf "$scratch"' EXIT
[ -n "$kept" ] || kept=$scratch/kept
mkdir -p "$kept" "$found" "$scratch/files"
options=()
[ ! -f "$here/$target.dict" ] || options=("-dict=$here/$target.dict")

# The last number behind a word in the log; 0 when there is none.
number_behind() { sed -n "s/.*$1 *\([0-9][0-9]*\).*/\1/p" "$log" | tail -n 1 | grep . || echo 0; }

status=0
# Random names may be those of files in the current folder.
cd "$scratch/files"
# What the library says on standard error is no part of the log.
TMPDIR=$scratch/files "$program" -max_total_time="$seconds" -timeout=60 -report_slow_units=60 \
  -rss_limit_mb=4096 -close_fd_mask=3 -print_final_stats=1 -artifact_prefix="$found/$target-" \
  ${options[@]+"${options[@]}"} "$kept" "$here/seeds/$target" 2>"$log" || status=$?
printf '%-10s %9d executions %6d edges %3d findings\n' "$target" \
  "$(number_behind 'number_of_executed_units:')" "$(number_behind 'cov:')" \
  "$(grep -ac 'Test unit written to' "$log")"
[ "$status" -ne 0 ] || exit 0
sed -n 's/^SUMMARY: /  /p' "$log"
sed -n "s|.*Test unit written to |  again with: $program |p" "$log"
echo "  all that was said is in $log"
exit 1
