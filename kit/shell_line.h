// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace kit {

/// A line of bash up to the cursor, in the words that a program would get. Nothing is run, and
/// nothing expanded but the ~/ that a whole word begins with: "$HOME" stays these five characters.
struct ShellLine
{
    std::vector<std::string> words; ///< the last, which may be empty, is being written
    char quote = 0;                 ///< that the last one is in, ' or "; 0: none
    std::size_t kept = 0; ///< bytes of the last word that bash leaves alone; it replaces the rest
};

/// `breaks` are the characters where bash begins to replace, as in its COMP_WORDBREAKS.
ShellLine shellLineFrom(const std::string& text, const std::string& breaks);

/// What bash has to put in there, so that the last word becomes `word`, which begins as the last
/// word does and has no control characters.
std::string quotedBehind(const ShellLine& line, const std::string& word);

} // namespace kit
