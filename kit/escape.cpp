// SPDX-License-Identifier: MIT
#include <kit/escape.h>
#include <kit/hex.h>

namespace kit {

namespace {

bool isControl(char byte)
{
    return static_cast<unsigned char>(byte) < 0x20U || byte == '\x7f';
}

/// Bytes of a UTF-8 character that `text` begins with and that terminals or readers may take for
/// a line break or a command: U+0080 to U+009F, and the line and paragraph separators. Else 0.
std::size_t unicodeControlSize(std::string_view text)
{
    if (text.size() >= 2 && text[0] == '\xc2' && (text[1] & '\xe0') == '\x80')
        return 2;
    const std::string_view three = text.substr(0, 3);
    return three == "\xe2\x80\xa8" || three == "\xe2\x80\xa9" ? 3 : 0;
}

void appendEscapedByte(char byte, std::string& line)
{
    line += "\\x";
    appendHex(byte, line);
}

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
        appendEscapedByte(byte, line);
    }
}

} // namespace

std::string escaped(std::string_view text)
{
    std::string line;
    line.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t unicode = unicodeControlSize(text.substr(i));
        for (std::size_t k = 0; k < unicode; ++k)
            appendEscapedByte(text[i + k], line);
        if (unicode > 0)
            i += unicode - 1;
        else if (isControl(text[i]))
            appendControl(text[i], line);
        else if (text[i] == '\\')
            line += "\\\\";
        else
            line += text[i];
    }
    return line;
}

} // namespace kit
