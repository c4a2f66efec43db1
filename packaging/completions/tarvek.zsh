#compdef zo zo-record tarvek-robot tarvek-desktop
# SPDX-License-Identifier: MIT
# Completion for zsh. The program itself knows how its line goes on; zsh quotes what it prints.
local texts
texts=$("${(Q)words[1]}" --complete "${(@Q)words[2,CURRENT-1]/#\~\//${(q)HOME}/}" "${(Q)PREFIX}" \
    </dev/null 2>/dev/null)
if (( $? == 3 )); then
    compset -P '--*='
    _files
elif [[ -n $texts ]]; then
    compadd -- "${(@f)texts}"
fi
