// SPDX-License-Identifier: MIT
#include <kit/escape.h>
#include <kit/hex.h>

#include <value/control_character.h>

namespace kit {

namespace {

/// One byte of a control character.
void appendControl(char byte, std::string& line)
{
    switch (byte) {
    case '\t':
        line += "\\t";
        break;
    case '\n':
        line += "\\n";
        break;
    case '\r':
        line += "\\r";
        break;
    default:
        line += "\\x";
        appendHex(byte, line);
    }
}

} // namespace

std::string escaped(std::string_view text)
{
    std::string line;
    line.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t control = zo::controlCharacterSize(text.substr(i));
        for (std::size_t k = 0; k < control; ++k)
            appendControl(text[i + k], line);
        if (control > 0)
            i += control - 1;
        else if (text[i] == '\\')
            line += "\\\\";
        else
            line += text[i];
    }
    return line;
}

} // namespace kit
