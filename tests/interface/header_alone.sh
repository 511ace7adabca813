#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# header_alone.sh <cc> <c++> <include folder> <header>: compiles the header alone as C99 and C++17.
set -eu
flags=(-Wall -Wextra -pedantic -Werror -fsyntax-only -I "$3")
source="#include <$4>"
"$1" -std=c99 "${flags[@]}" -x c - <<<"$source"$'\n''typedef int not_empty;'
"$2" -std=c++17 "${flags[@]}" -x c++ - <<<"$source"
# Twice is as good as once.
"$1" -std=c99 "${flags[@]}" -x c - <<<"$source"$'\n'"$source"$'\n''typedef int not_empty;'
