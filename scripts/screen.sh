# SPDX-License-Identifier: MIT
# Sourced by scripts that use a program as a user does, on a screen that nobody sees:
# Xvfb shows it, xdotool has the mouse and the keyboard, maim takes the pictures. Comes after
# programs.sh.
# shellcheck shell=bash disable=SC2154 # what programs.sh sets

# The programs are to look the same on every machine, and to leave a user's settings alone.
own_settings() {
    XDG_CONFIG_HOME=$work/config
    XDG_RUNTIME_DIR=$work/runtime
    QT_SCALE_FACTOR=1
    LANGUAGE=en
    export XDG_CONFIG_HOME XDG_RUNTIME_DIR QT_SCALE_FACTOR LANGUAGE
    mkdir -m 700 "$XDG_RUNTIME_DIR"
    unset DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM QT_QPA_PLATFORMTHEME QT_STYLE_OVERRIDE
}

# start_screen WIDTHxHEIGHT [SCALE]: starts a screen of its own and makes it the one that programs
# use; SCALE is how dense it is. `work` is a folder for its files. The screen is one of the `children`.
start_screen() {
    own_settings
    start Xvfb -displayfd 3 -screen 0 "${1}x24" -nolisten tcp -noreset 3>"$work/display" 2>/dev/null
    wait_until 10 test -s "$work/display" || fail "Xvfb does not start"
    export DISPLAY
    DISPLAY=:$(<"$work/display")
    # Without, programs reckon with the size of a screen that is none.
    awk "BEGIN { print \"Xft.dpi:\", 96 * ${2:-1} }" | xrdb -nocpp -merge
}

# start_compositor WIDTHxHEIGHT SCALE: the same with Wayland.
start_compositor() {
    own_settings
    local scale=1
    case $2 in
        *.*) QT_SCALE_FACTOR=$2 ;;
        *) scale=$2 ;;
    esac
    start weston --backend=headless-backend.so --no-config --idle-time=0 --socket=screen \
        --scale="$scale" --width=$((${1%x*} / scale)) --height=$((${1#*x} / scale)) \
        >"$work/compositor" 2>&1
    wait_until 10 test -S "$XDG_RUNTIME_DIR/screen" || {
        cat "$work/compositor" >&2
        fail "weston does not start"
    }
    export WAYLAND_DISPLAY=screen QT_QPA_PLATFORM=wayland
    # This compositor has no keyboard, and what Qt 6.4 has for typing on Wayland reads from a null
    # pointer then.
    export QT_IM_MODULE=compose
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

# answer_with_example: opens the example configuration in the start-up dialog that is open.
answer_with_example() {
    wait_for_window "Glimmet configuration"
    click 112 60
    wait_for_window "Open File"
    type_text "$PWD/docs/example.xml"
    keys Return
    wait_for_no_window "Open File"
}

# The panel's window, with the example configuration in it, made large enough to see all of it.
# Begins where the start-up dialog is open.
open_example() {
    answer_with_example
    wait_for_no_window "Glimmet configuration"
    wait_for_window "Tarvek Desktop \\(connected to .*\\)"
    xdotool windowsize --sync "$window" 1360 680
    sleep 8 # until the graph is full
}
