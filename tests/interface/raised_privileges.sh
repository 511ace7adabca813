#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# raised_privileges.sh <program> <module> <scratch folder>: what the environment names as code is
# loaded into a process of the user's own, and not into one with raised privileges: a copy of the
# program that is set-group-id. As root also one that is set-user-id.
set -eu
program=$1 module=$2 scratch=$3
rm -rf "$scratch"
mkdir -p "$scratch/plugins/platforms"

fail() { echo "$*"; exit 1; }
skip() { echo "$*: nothing is shown here"; exit 77; }

# run <program> [<name>=<value>]...: what the program writes, its complaints included.
run() {
  env -u QT_PLUGIN_PATH -u QT_QPA_PLATFORM_PLUGIN_PATH -u KORVEL_DESKTOP \
    QT_QPA_PLATFORM=offscreen KORVEL_UNSEEN=1 "${@:2}" "$1" 2>&1
}
has() { grep -qx "$1" <<<"$output"; }

# A group of the user's other than the process's own; root may take any.
other_group() {
  local group
  for group in $(id -G) 65534; do
    [ "$group" = "$(id -g)" ] || { echo "$group"; return; }
  done
}
raised=$scratch/raised
cp "$program" "$raised"
chgrp "$(other_group)" "$raised" && chmod g+s "$raised" ||
  skip "no group to give the program"
output=$(run "$raised")
has 'raised 1' || skip "set-group-id has no effect in this folder"

# The desktop module.
output=$(run "$program" "KORVEL_DESKTOP=$module")
has 'raised 0' && has "$module" || fail "KORVEL_DESKTOP leads to no module: $output"
output=$(run "$raised" "KORVEL_DESKTOP=$module")
has 'raised 1' && has 'image 1' || fail "no desktop with raised privileges: $output"
! has "$module" || fail "KORVEL_DESKTOP was looked at with raised privileges"

# A plugin of the toolkit, by both variables.
plugin=$(grep '/libqoffscreen\.so$' <<<"$output") || fail "no plugin was loaded: $output"
copy=$scratch/plugins/platforms/libqoffscreen.so
cp "$plugin" "$copy"
for variable in "QT_PLUGIN_PATH=$scratch/plugins" \
                "QT_QPA_PLATFORM_PLUGIN_PATH=$scratch/plugins/platforms"; do
  output=$(run "$program" "$variable")
  has "$copy" || fail "$variable leads to no plugin: $output"
  output=$(run "$raised" "$variable")
  has 'raised 1' && has 'image 1' || fail "no drawing with $variable: $output"
  ! has "$copy" || fail "$variable was looked at with raised privileges"
done

# Another user's program draws nothing, and does not die of it.
[ "$(id -u)" = 0 ] || exit 0
foreign=$scratch/foreign
cp "$program" "$foreign"
chown 65534 "$foreign"
chmod u+s "$foreign"
output=$(run "$foreign" "KORVEL_DESKTOP=$module") || {
  [[ $output != *"libkorvel"*"cannot open shared object file"* ]] ||
    skip "another user does not get at the library in its folder"
  fail "the set-user-id program died: $output"
}
has 'raised 1' && has 'image 0' || fail "the set-user-id program: $output"
! has "$module" || fail "KORVEL_DESKTOP was looked at in a set-user-id program"
