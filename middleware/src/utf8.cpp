#include "utf8.h"

namespace {

constexpr std::size_t longestCharacter = 4;

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
