# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# Sourced by scripts that play a person at the screen (see with-screen and with-wayland): keys and
# clicks from outside the application, and pictures of what it shows.

on_wayland() { [ -n "${WAYLAND_DISPLAY:-}" ]; }

# What the compositor tells of the window that has the focus.
focused_window() { swaymsg -t get_tree | sed -n '/"focused": true/,/"nodes"/p'; }

active_title() {
  if on_wayland; then
    focused_window | sed -n 's/^ *"name": "\(.*\)",$/\1/p'
  else
    xdotool getactivewindow getwindowname 2>/dev/null
  fi
}

# Waits up to a minute until a window with exactly this title is on the screen and active.
wait_for_window() {
  local _
  for _ in $(seq 1200); do
    [ "$(active_title)" = "$1" ] && return
    sleep 0.05
  done
  echo "no active window \"$1\"" >&2
  return 1
}

# Presses keys by their names, one after the other: press Tab Return ctrl+a
press() {
  local key
  for key in "$@"; do
    if on_wayland; then
      local down=() up=() modifier
      for modifier in $(tr + ' ' <<<"${key%"${key##*+}"}"); do
        down+=(-M "$modifier")
        up+=(-m "$modifier")
      done
      wtype ${down[@]+"${down[@]}"} -k "${key##*+}" ${up[@]+"${up[@]}"}
    else
      xdotool key --clearmodifiers "$key"
    fi
    sleep 0.03
  done
}

# Types a text, accented letters included.
write() {
  if on_wayland; then wtype -d 40 -- "$1"; else xdotool type --delay 40 "$1"; fi
}

# Moves the mouse to a place of the screen.
move() {
  if on_wayland; then echo "$1 $2 1 0" >"$POINTER"; else xdotool mousemove "$1" "$2"; fi
}

# The top left corner of the active window's content, under Wayland.
content_corner() {
  focused_window | awk '/"(rect|window_rect)": {/ { own = 1 } /}/ { own = 0 }
    own && /"x"/ { x += $2 } own && /"y"/ { y += $2 } END { print x, y }'
}

# Clicks at a place of the active window's content, in pixels from its top left corner.
click() {
  if on_wayland; then
    local x y
    read -r x y < <(content_corner)
    echo "$((x + $1)) $((y + $2)) 1 1" >"$POINTER"
    sleep 0.12
  else
    xdotool mousemove --window "$(xdotool getactivewindow)" "$1" "$2" click 1
  fi
}

# Closes the active window with the key for it, or what stands for one.
close_window() {
  if on_wayland; then swaymsg -q kill; else press alt+F4; fi
}

# Leaves a picture of the screen when it has come to rest.
picture() {
  sleep 0.3
  if on_wayland; then grim "$1"; else import -window root "$1"; fi
}
