# shellcheck shell=bash
# Sourced by scripts that play a person at the screen (see with-screen): keys and clicks from
# outside the application, and pictures of what it shows.

# Waits up to ten seconds until a window with exactly this title is on the screen and active.
wait_for_window() {
  local _
  for _ in $(seq 200); do
    [ "$(xdotool getactivewindow getwindowname 2>/dev/null)" = "$1" ] && return
    sleep 0.05
  done
  echo "no active window \"$1\"" >&2
  return 1
}

# Presses keys by their names, one after the other: press Tab Return ctrl+a
press() {
  local key
  for key in "$@"; do
    xdotool key --clearmodifiers "$key"
    sleep 0.03
  done
}

# Types a text, accented letters included.
write() { xdotool type --delay 40 "$1"; }

# Clicks at a place of the active window's content, in pixels from its top left corner.
click() { xdotool mousemove --window "$(xdotool getactivewindow)" "$1" "$2" click 1; }

# Leaves a picture of the screen when it has come to rest.
picture() {
  sleep 0.3
  import -window root "$1"
}
