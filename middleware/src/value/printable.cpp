// SPDX-License-Identifier: MIT
#include "value/printable.h"

#include "value/utf8.h"

#include <algorithm>

namespace zo {

namespace {

constexpr std::size_t longestQuote = 200;

/// Whether `character`, a whole one of several bytes, is a control character: U+0080 to U+009F.
bool isWideControl(std::string_view character)
{
    return character.size() == 2 && character[0] == '\xC2' &&
           static_cast<unsigned char>(character[1]) < 0xA0;
}

bool isPlain(char byte)
{
    return static_cast<unsigned char>(byte) >= 0x20 && byte != '\x7f';
}

} // namespace

std::string printable(std::string_view text)
{
    const std::string_view shown = wholeCharacters(text, longestQuote);
    std::string result;
    result.reserve(shown.size() + 3);
    for (std::size_t at = 0; at < shown.size();) {
        const std::size_t size = std::max<std::size_t>(characterAt(shown, at), 1);
        const std::string_view character = shown.substr(at, size);
        const bool isByte = size == 1;
        const bool isAscii = static_cast<unsigned char>(character[0]) < 0x80;
        if (isByte ? isAscii && isPlain(character[0]) : !isWideControl(character))
            result += character;
        else
            result += '?';
        at += size;
    }
    if (shown.size() < text.size())
        result += "...";
    return result;
}

} // namespace zo
