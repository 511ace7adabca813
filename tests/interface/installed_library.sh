#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# installed_library.sh <cmake> <build folder> <application> <cc> <scratch folder> [<flag>]...:
# installs the library into a folder, then builds and runs an application against it, once with
# find_package and once with pkg-config. A program with a variable of a reserved name does not build.
set -eu
cmake=$1 build=$2 application=$3 cc=$4 scratch=$5
rm -rf "$scratch"
mkdir -p "$scratch"
prefix=$scratch/prefix
"$cmake" --install "$build" --prefix "$prefix" >/dev/null
library=$(find "$prefix" -name 'libkorvel.so')
folder=$(dirname "$library")
for file in "$folder/libkorvel.so.1" "$folder/korvel/korvel-qt.so" \
            "$prefix/include/korvel/korvel.h" "$folder/pkgconfig/korvel.pc" \
            "$prefix/bin/korvel-tables" "$prefix/share/man/man1/korvel-tables.1" \
            "$prefix/share/bash-completion/completions/korvel-tables" \
            "$prefix/share/korvel/tables/pays.tab" \
            "$prefix/share/korvel/tables/LICENSES.md" "$prefix/share/doc/korvel/LICENSE" \
            "$prefix"/share/doc/korvel/{CHANGELOG,CONTRIBUTING,SECURITY}.md; do
  [ -e "$file" ] || { echo "not installed: ${file#"$prefix/"}"; exit 1; }
done

# A sanitized library needs a sanitized application.
flags=("${@:6}")

"$cmake" -S "$application" -B "$scratch/found" -DCMAKE_PREFIX_PATH="$prefix" \
  -DCMAKE_C_COMPILER="$cc" -DCMAKE_C_FLAGS="${flags[*]-}" >/dev/null
"$cmake" --build "$scratch/found" >/dev/null
"$scratch/found/application"
if clash=$("$cmake" --build "$scratch/found" --target clash 2>&1); then
  echo "a variable of a reserved name was built"
  exit 1
fi
grep -q 'clash\.c\.o defines vi, a variable' <<<"$clash" || { echo "$clash"; exit 1; }
! grep -q 'defines LDB' <<<"$clash" || { echo "a static variable counts as reserved"; exit 1; }

export PKG_CONFIG_PATH=$folder/pkgconfig
# shellcheck disable=SC2046
"$cc" "${flags[@]}" "$application/application.c" -o "$scratch/by_pkg_config" \
  $(pkg-config --cflags --libs korvel)
LD_LIBRARY_PATH=$folder "$scratch/by_pkg_config"
