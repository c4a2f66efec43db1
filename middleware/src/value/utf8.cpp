// SPDX-License-Identifier: MIT
#include "value/utf8.h"

#include <cstdint>

namespace zo {

namespace {

constexpr std::size_t longestCharacter = 4;
constexpr std::uint32_t smallestCode[] = {0, 0, 0x80, 0x800, 0x10000}; ///< by size
constexpr std::uint32_t largestCode = 0x10FFFF;

bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// Bytes of the character that `lead` begins; 1 for a byte that begins none.
std::size_t characterSize(char lead)
{
    const auto byte = static_cast<unsigned char>(lead);
    if (byte >= 0xF0U)
        return 4;
    if (byte >= 0xE0U)
        return 3;
    return byte >= 0xC0U ? 2 : 1;
}

} // namespace

std::string_view wholeCharacters(std::string_view text, std::size_t size)
{
    if (text.size() <= size)
        return text;
    std::size_t lead = size;
    while (lead > 0 && size - lead < longestCharacter && isContinuation(text[lead]))
        --lead;
    const bool splits = lead < size && lead + characterSize(text[lead]) > size;
    return text.substr(0, splits ? lead : size);
}

std::size_t characterAt(std::string_view text, std::size_t position)
{
    const auto lead = static_cast<unsigned char>(text[position]);
    if (lead < 0x80)
        return 1;
    const std::size_t size = characterSize(text[position]);
    if (size == 1 || lead > 0xF4 || text.size() - position < size)
        return 0;
    std::uint32_t code = lead & (0x7FU >> size);
    for (std::size_t i = 1; i < size; ++i) {
        if (!isContinuation(text[position + i]))
            return 0;
        code = code << 6U | (static_cast<unsigned char>(text[position + i]) & 0x3FU);
    }
    const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    return code < smallestCode[size] || code > largestCode || isSurrogate ? 0 : size;
}

} // namespace zo
