// SPDX-License-Identifier: MIT
#include "link/hash_slot.h"

#include <cstdint>

namespace zo {

namespace {

constexpr std::uint32_t polynomial = 0x1021;

std::uint32_t withByte(std::uint32_t sum, unsigned char byte)
{
    sum ^= std::uint32_t{byte} << 8;
    for (int bit = 0; bit < 8; ++bit)
        sum = (sum << 1) ^ ((sum & 0x8000) != 0 ? polynomial : 0);
    return sum & 0xffff;
}

} // namespace

std::string_view hashTagOf(std::string_view key)
{
    const std::size_t open = key.find('{');
    const std::size_t close = open == key.npos ? open : key.find('}', open);
    return close == key.npos || close == open + 1 ? key : key.substr(open + 1, close - open - 1);
}

bool hasHashTag(std::string_view prefix)
{
    return hashTagOf(prefix).size() < prefix.size();
}

int hashSlotOf(std::string_view key)
{
    std::uint32_t sum = 0;
    for (const char byte : hashTagOf(key))
        sum = withByte(sum, static_cast<unsigned char>(byte));
    return static_cast<int>(sum % hashSlots);
}

} // namespace zo
