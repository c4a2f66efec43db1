# SPDX-License-Identifier: MIT
# Sourced by scripts that a user runs: how they tell that something failed.
# shellcheck shell=bash

program=scripts/${0##*/}

fail() {
    echo "$program: $1" >&2
    exit "${2:-1}"
}
