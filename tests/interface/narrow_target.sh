#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# narrow_target.sh <cmake> <project> <cc> <c++> <build folder>: configures for a 32-bit target. One
# line says what is needed, and nothing else is complained of.
set -eu
cmake=$1 project=$2 cc=$3 cxx=$4 build=$5
rm -rf "$build"
if "$cmake" -S "$project" -B "$build" -DCMAKE_TRY_COMPILE_TARGET_TYPE=STATIC_LIBRARY \
  -DCMAKE_C_COMPILER="$cc" -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_C_FLAGS=-m32 \
  -DCMAKE_CXX_FLAGS=-m32 >/dev/null 2>"$build.errors"; then
  echo "a 32-bit target is accepted"
  exit 1
fi
said=$(grep -v -e '^CMake Error at CMakeLists.txt:[0-9]* (message):$' -e '^$' "$build.errors")
[ "$said" = "  Korvel needs a compiler for a 64-bit target, such as x86-64 or arm64." ] || {
  cat "$build.errors"
  exit 1
}
echo "$said"
