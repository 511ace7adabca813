# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# Sourced by the scripts that run a command on a screen of its own: a folder for what belongs to the
# screen, and the programs behind it, which end with the script.

folder=$(mktemp -d)
programs=()

# Ends the programs, the last one started first, and waits for the first, which is the server.
cleanup() {
  local i
  for ((i = ${#programs[@]} - 1; i >= 0; i--)); do
    kill "${programs[i]}" 2>/dev/null || true
  done
  [ ${#programs[@]} -eq 0 ] || wait "${programs[0]}" 2>/dev/null || true
  rm -rf "$folder"
}
trap cleanup EXIT
trap 'exit 143' TERM INT

# Waits up to a minute until a command succeeds, as long as the program that was started last runs.
wait_for() {
  local _
  for _ in $(seq 1200); do
    "$@" >/dev/null 2>&1 && return
    kill -0 "${programs[-1]}" 2>/dev/null || break
    sleep 0.05
  done
  echo "${0##*/}: waited in vain for: $*" >&2
  cat "$folder"/*.log >&2
  exit 1
}
