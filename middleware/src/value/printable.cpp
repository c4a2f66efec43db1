// SPDX-License-Identifier: MIT
#include "value/printable.h"

#include "value/control_character.h"
#include "value/utf8.h"

#include <algorithm>

namespace zo {

namespace {

constexpr std::size_t longestQuote = 200;

/// Whether `character` is a byte that begins none in UTF-8.
bool isLoneByte(std::string_view character)
{
    return character.size() == 1 && static_cast<unsigned char>(character[0]) >= 0x80;
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
        if (controlCharacterSize(character) > 0 || isLoneByte(character))
            result += '?';
        else
            result += character;
        at += size;
    }
    if (shown.size() < text.size())
        result += "...";
    return result;
}

} // namespace zo
