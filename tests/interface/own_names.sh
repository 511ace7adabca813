#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# own_names.sh <plain program> <program with own names> <nm> <library> <part> <scratch folder>: both
# programs write the same about a part of the library, although one of them has a function of its
# own for each that the library exports.
set -eu
plain=$1 own=$2 nm=$3 library=$4 part=$5 scratch=$6/$5

fail() { echo "$*"; exit 1; }

functions() { "$nm" -D --defined-only "$1" | awk '$2 == "T" { print $3 }' | sort; }
hidden=$(comm -23 <(functions "$library") <(functions "$own"))
[ -z "$hidden" ] || fail "the program has no function of its own for:" $hidden

# play <program>: what it writes about the part in an empty folder, its complaints included.
play() {
  rm -rf "$scratch"
  mkdir -p "$scratch/Data"
  "$1" "$part" "$scratch" 2>&1 || echo "exit status $?"
}
expected=$(play "$plain")
grep -qx played <<<"$expected" && ! grep -q '^exit status' <<<"$expected" &&
  [ "$(wc -l <<<"$expected")" -gt 2 ] || fail "without own names: $expected"
found=$(play "$own")
[ "$found" = "$expected" ] || { diff <(echo "$expected") <(echo "$found"); exit 1; }
echo "$(wc -l <<<"$expected") lines, the same from both"
