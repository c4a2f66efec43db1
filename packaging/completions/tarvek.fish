# SPDX-License-Identifier: MIT
# Completion for fish. The program itself knows how its line goes on; fish quotes what it prints, and
# finds what fits the word itself, unless it is an option.
function __tarvek_complete
    set -l words (string replace -r '^~/' -- $HOME/ (commandline -opc))
    set -l last (commandline -ct)
    string match -q -- '-*' "$last"; or set last ''
    set -l texts ($words[1] --complete $words[2..-1] "$last" </dev/null 2>/dev/null)
    if test $status -eq 3
        __fish_complete_path (commandline -ct)
    else if test (count $texts) -gt 0
        printf '%s\n' $texts
    end
end
for program in zo zo-record tarvek-robot tarvek-desktop
    complete -c $program -f -a '(__tarvek_complete)'
end
