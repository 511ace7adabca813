#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# no_toolkit.sh <objdump> <library>: the library needs the C and C++ runtimes and nothing else.
set -eu
needed=$("$1" -p "$2" | awk '$1 == "NEEDED" {print $2}')
[ -n "$needed" ] || { echo "no needed library read"; exit 1; }
for name in $needed; do
  case $name in
    libc.so.* | libm.so.* | libstdc++.so.* | libgcc_s.so.* | ld-linux*) ;;
    *) echo "the library needs $name"; exit 1 ;;
  esac
done
