#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# headers_in_any_order.sh <cc> <c++> <include folder>: each header first, all others behind it in
# both directions; korvel.h names every one of them.
set -eu
flags=(-Wall -Wextra -pedantic -Werror -fsyntax-only -I "$3")
cd "$3"
headers=(korvel/*.h)
for first in "${headers[@]}"; do
  forward="#include <$first>"$'\n' backward=$forward
  for header in "${headers[@]}"; do
    forward+="#include <$header>"$'\n'
    backward="${backward}"$(printf '#include <%s>' "${headers[${#headers[@]} - 1]}")$'\n'
    backward+="#include <$header>"$'\n'
  done
  for source in "$forward" "$backward"; do
    "$1" -std=c99 "${flags[@]}" -x c - <<<"$source"
    "$2" -std=c++17 "${flags[@]}" -x c++ - <<<"$source"
  done
done
for header in "${headers[@]}"; do
  [ "$header" = korvel/korvel.h ] || grep -q "<$header>" korvel/korvel.h ||
    { echo "korvel.h does not include $header"; exit 1; }
done
