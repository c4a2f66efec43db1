# SPDX-License-Identifier: MIT
# Sourced by scripts that use a program as a user does, on a screen that nobody sees:
# Xvfb shows it, xdotool has the mouse and the keyboard, maim takes the pictures. Comes after
# programs.sh.
# shellcheck shell=bash disable=SC2154 # what programs.sh sets

# start_screen: starts a screen of its own and makes it the one that programs use. `work` is a
# folder for its files. The screen is one of the `children`.
start_screen() {
    Xvfb -displayfd 3 -screen 0 1440x900x24 -nolisten tcp -noreset 3>"$work/display" 2>/dev/null &
    children+=($!)
    wait_until 10 test -s "$work/display" || fail "Xvfb does not start"
    DISPLAY=:$(<"$work/display")
    # The programs are to look the same on every machine, and to leave a user's settings alone.
    XDG_CONFIG_HOME=$work/config
    XDG_RUNTIME_DIR=$work/runtime
    QT_SCALE_FACTOR=1
    export DISPLAY XDG_CONFIG_HOME XDG_RUNTIME_DIR QT_SCALE_FACTOR
    mkdir -m 700 "$XDG_RUNTIME_DIR"
    unset WAYLAND_DISPLAY QT_QPA_PLATFORM QT_QPA_PLATFORMTHEME QT_STYLE_OVERRIDE
}

# Not by xdotool's own search for names: it does not see those of windows without a title of
# their own.
window_called() {
    local id
    window=
    for id in $(xdotool search --onlyvisible --name '.*' 2>/dev/null); do
        if [[ $(xdotool getwindowname "$id" 2>/dev/null) =~ ^$1$ ]]; then
            window=$id
        fi
    done
    [ -n "$window" ]
}

# wait_for_window TITLE: an extended regular expression. Sets `window`.
wait_for_window() {
    wait_until 30 window_called "$1" || fail "no window \"$1\" came up"
}

window_gone() {
    ! window_called "$1"
}

wait_for_no_window() {
    wait_until 30 window_gone "$1" || fail "the window \"$1\" does not go"
}

# click X Y: in `window`.
click() {
    xdotool mousemove --window "$window" "$1" "$2" click 1
}

# drag X Y TO_X TO_Y: in `window`.
drag() {
    xdotool mousemove --window "$window" "$1" "$2" mousedown 1 \
        mousemove --window "$window" "$(($1 + 5))" "$2" mousemove --window "$window" "$3" "$4" \
        mouseup 1
}

# keys KEY...: to `window`.
keys() {
    xdotool windowfocus --sync "$window" key --clearmodifiers --delay 30 "$@"
}

# type_text TEXT: to `window`.
type_text() {
    xdotool windowfocus --sync "$window" type --delay 5 "$1"
}

# picture FILE [WINDOW]: of one window, or of the whole screen.
picture() {
    maim --hidecursor ${2:+--window "$2"} "$1"
}

# The panel's window, with the example configuration in it, made large enough to see all of it.
# Begins where the start-up dialog is open.
open_example() {
    wait_for_window "Glimmet configuration"
    click 112 60
    wait_for_window "Open File"
    type_text "$PWD/docs/example.xml"
    keys Return
    wait_for_no_window "Glimmet configuration"
    wait_for_window "Tarvek Desktop \\(connected to .*\\)"
    xdotool windowsize --sync "$window" 1360 680
    sleep 0.5 # until the window has arranged itself
    drag 407 300 720 300 # the border between table and graph
    sleep 0.5
    drag 502 83 600 83 # the border between value and colour
    sleep 8 # until the graph is full
}
