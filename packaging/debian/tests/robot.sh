# SPDX-License-Identifier: MIT
# Sourced by the tests of the packages: a simulated robot as a user starts it, which ends with the
# test. Sets `robot`, the words that lead to it.
# shellcheck shell=bash

folder=$(mktemp -d)
mkfifo "$folder/says"
tarvek-robot --open >"$folder/says" &
simulated=$!
# For whoever starts more and has a trap of its own.
end_robot() {
    kill $simulated
    wait $simulated || true
    rm -rf "$folder"
}
trap end_robot EXIT
read -r -t 30 _ _ address <"$folder/says"
# shellcheck disable=SC2034 # for whoever sources this
robot=(--connect "$address")
