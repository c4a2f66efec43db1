# SPDX-License-Identifier: MIT
# Sourced by scripts that run the built programs. What they start ends with the script.
# shellcheck shell=bash

. scripts/fail.sh

programs=build/programs/bin # where they are
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

# wait_until SECONDS COMMAND...: until the command succeeds; fails when that takes too long.
wait_until() {
    local deadline=$((SECONDS + $1))
    shift
    until "$@"; do
        [ $SECONDS -lt $deadline ] || return 1
        sleep 0.05
    done
}

# start COMMAND...: in the background, as one of the `children`. Ends with the script, also when that
# is killed.
start() {
    setpriv --pdeathsig TERM -- "$@" &
    children+=($!)
}

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

# Sets `connection`, the options that lead to it.
start_robot() {
    : >"$work/robot.out"
    start "$programs/tarvek-robot" >"$work/robot.out"
    wait_until 30 robot_is_ready_or_gone || true
    local address password
    address=$(sed -n 's/^listening on //p' "$work/robot.out")
    password=$(sed -n 's/^password in //p' "$work/robot.out")
    [ -n "$address" ] || fail "the simulated robot does not start"
    # shellcheck disable=SC2034 # for whoever sources this
    connection=(--connect "$address" --password-file "$password")
}

start_desktop() {
    start "$programs/tarvek-desktop" "$@"
}
