# SPDX-License-Identifier: MIT
# Sourced by scripts that run the built programs. What they start ends with the script.
# shellcheck shell=bash disable=SC2154 # what screen.sh sets

program=scripts/${0##*/}

fail() {
    echo "$program: $1" >&2
    exit "${2:-1}"
}

children=()
work=$(mktemp -d)
end_children() {
    trap '' INT TERM HUP
    # The last one started ends first: the desktop before its robot and its screen.
    local i
    for ((i = ${#children[@]} - 1; i >= 0; i--)); do
        kill "${children[i]}" 2>/dev/null || true
        wait "${children[i]}" 2>/dev/null || true
    done
    rm -rf "$work"
}
trap end_children EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

build_programs() {
    cmake --preset programs >"$work/configure.log" 2>&1 || {
        cat "$work/configure.log" >&2
        fail "configuring failed"
    }
    cmake --build --preset programs
}

robot_is_ready_or_gone() {
    grep -q '^listening on ' "$work/robot.out" || ! kill -0 "${children[-1]}" 2>/dev/null
}

# Takes options of the robot, none if there are none. Sets `address`.
# shellcheck disable=SC2120 # not every script has options for it
start_robot() {
    : >"$work/robot.out"
    build/programs/bin/tarvek-robot "$@" >"$work/robot.out" &
    children+=($!)
    wait_until 30 robot_is_ready_or_gone || true
    address=$(sed -n 's/^listening on //p' "$work/robot.out")
    [ -n "$address" ] || fail "the simulated robot does not start"
}

start_desktop() {
    build/programs/bin/tarvek-desktop "$@" &
    children+=($!)
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
