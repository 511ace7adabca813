#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# full_disk.sh <command>...: runs the command with temporary files on a disk of 64 KiB; skipped
# where no disk can be mounted.
set -eu
scratch=$(mktemp -d)
trap 'rmdir "$scratch"' EXIT
# shellcheck disable=SC2016
mount=(unshare --mount sh -euc 'mount -t tmpfs -o size=64k,mode=700 tmpfs "$1"; shift
  TMPDIR=$1; export TMPDIR; shift; exec "$@"' sh "$scratch" "$scratch")
"${mount[@]}" true 2>/dev/null || { echo 'no disk can be mounted here'; exit 77; }
"${mount[@]}" "$@"
