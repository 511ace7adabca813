#!/usr/bin/env bash
# other_compiler.sh <cmake> <cc> <c++> <project> <build folder>: builds the library as it is
# installed with another compiler, warnings as errors. The desktop module, the examples and the tests
# are compiled by it with the sanitizers.
set -eu
"$1" -S "$4" -B "$5" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_C_COMPILER="$2" \
  -DCMAKE_CXX_COMPILER="$3" -DKORVEL_WARNINGS_AS_ERRORS=ON -DKORVEL_BUILD_QT=OFF \
  -DKORVEL_BUILD_EXAMPLES=OFF
"$1" --build "$5"
