#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# install_preset.sh <cmake> <project> <build folder>: configures with the preset "install", finding
# no package of the tests, benchmarks and examples, and looks for programs of theirs.
set -eu
cmake=$1 project=$2 build=$3
rm -rf "$build"
hidden=()
for package in GTest benchmark Python3; do
  hidden+=("-DCMAKE_DISABLE_FIND_PACKAGE_$package=ON")
done
cd "$project"
"$cmake" --preset install -B "$build" "${hidden[@]}"
targets=$("$cmake" --build "$build" --target help)
grep '^korvel_qt:' <<<"$targets"
grep '^korvel_tables:' <<<"$targets"
! grep -E '(_test|_bench|_host|_program|fiche|register|vitrine):' <<<"$targets"
