#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# outside_example.sh <cmake> <prefix> <examples> <c++> <scratch folder>: builds the register of
# vaccinations against the library that is installed at the prefix, from a copy that has nothing of
# the project around it, and has it write a booklet.
set -eu
cmake=$1 prefix=$2 examples=$3 scratch=$5
export CXX=$4
rm -rf "$scratch"
mkdir -p "$scratch/Registre/personnes"
cp -R "$examples/common" "$examples/register" "$scratch"

cd "$scratch/register"
export CMAKE_PREFIX_PATH=$prefix
"$cmake" -B build >"$scratch/log" && "$cmake" --build build >>"$scratch/log" || {
  cat "$scratch/log"
  exit 1
}

printf '[Personne]\r\nnom=Lef\350vre\r\nprenom=Zo\351\r\nnaissance=20010203\r\n%s' \
  $'[Vaccinations]\r\n1=20200304\tDTP\tU34\tDr M\t0\r\n' >"$scratch/Registre/personnes/0001.per"
export REGISTER_VOLUMES=$scratch QT_QPA_PLATFORM=offscreen
build/register --carnet 1 "$scratch/carnet.pdf"
text=$(pdftotext -layout "$scratch/carnet.pdf" -)
for words in 'Zoé Lefèvre' 'Diphtérie-tétanos-poliomyélite'; do
  grep -q "$words" <<<"$text" || { echo "no \"$words\" in the booklet: $text"; exit 1; }
done
