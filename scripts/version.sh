# SPDX-License-Identifier: MIT
# Sourced by scripts that need the version, which stands in CMakeLists.txt and nowhere else, and the
# day of its release: sets `version` and `release_date`.
# shellcheck shell=bash
# shellcheck disable=SC2034 # for whoever sources this

version=$(sed -n 's/^project(glimmet VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
release_date=$(sed -n 's/^set(GLIMMET_RELEASE_DATE \([0-9-]*\))$/\1/p' CMakeLists.txt)
if [ -z "$version" ] || [ -z "$release_date" ]; then
    fail "CMakeLists.txt does not begin with the version and the day of its release"
fi
