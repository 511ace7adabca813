#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# told_what_to_install.sh <scratch folder>: who runs a script where packages are missing, and may
# not install them, gets one line that says which, and the script ends. On Wayland the demo asks for
# what Wayland needs.
set -eu
cd "$(dirname "$0")/../.."
scratch=$1
rm -rf "$scratch"
mkdir -p "$scratch"

# A system of somebody who may not become root and has nothing installed.
for tool in dpkg-query sudo; do printf '#!/bin/sh\nexit 1\n' >"$scratch/$tool"; done
printf '#!/bin/sh\necho 1000\n' >"$scratch/id"
chmod +x "$scratch"/*

# told <name=value> <script> [argument]...: the one line.
told() {
  local answer=$scratch/answer
  if env -u DISPLAY -u WAYLAND_DISPLAY "$1" PATH="$scratch:$PATH" "${@:2}" \
      >"$answer" 2>&1 </dev/null; then
    echo "${*:2}: ends as if all were well"
    exit 1
  fi
  [ "$(wc -l <"$answer")" -eq 1 ] || { echo "${*:2}: not one line:"; cat "$answer"; exit 1; }
  cat "$answer"
}
# asks <package> [name=value] <script> [argument]...: that line names the package.
asks() {
  local line
  line=$(told "${@:2}") || { echo "$line"; exit 1; }
  grep "please have them installed: apt-get install .*\b$1\b" <<<"$line"
}

asks qt6-base-dev LC_ALL=C scripts/demo
asks xvfb LC_ALL=C scripts/demo
asks sway LC_ALL=C scripts/demo fiche wayland
asks qt6-wayland WAYLAND_DISPLAY=wayland-0 scripts/demo
asks googletest LC_ALL=C scripts/test
asks debhelper LC_ALL=C scripts/package
line=$(told DISPLAY=:0 scripts/demo) || { echo "$line"; exit 1; }
case $line in *qt6-wayland*) echo "asked for without Wayland: $line"; exit 1 ;; esac
