# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# Completion for bash. The program itself knows how its line goes on, and quotes what it prints.
_tarvek_complete() {
    local texts status
    texts=$("$1" --complete-line "${COMP_LINE:0:COMP_POINT}" "$COMP_WORDBREAKS" </dev/null 2>/dev/null)
    status=$?
    COMPREPLY=()
    [ -z "$texts" ] || mapfile -t COMPREPLY <<<"$texts"
    [ $status != 3 ] || compopt -o default
}
complete -F _tarvek_complete zo zo-record tarvek-robot tarvek-desktop
