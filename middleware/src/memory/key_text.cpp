// SPDX-License-Identifier: MIT
#include "memory/key_text.h"

#include "value/printable.h"

#include <zo/error.h>

namespace zo {

namespace {

constexpr std::size_t longestKey = std::size_t{64} << 10;

} // namespace

std::string quotedKey(std::string_view key)
{
    return "\"" + printable(key) + "\"";
}

bool endsWith(std::string_view key, std::string_view ending)
{
    return key.size() >= ending.size() && key.substr(key.size() - ending.size()) == ending;
}

bool canBeKey(std::string_view prefix, std::string_view key)
{
    return prefix.size() + key.size() <= longestKey;
}

void checkKey(std::string_view prefix, std::string_view key)
{
    if (!canBeKey(prefix, key))
        throw ZoError("key " + quotedKey(key) + (prefix.empty() ? "" : " and its prefix") +
                      (prefix.empty() ? " is" : " are") + " longer than " +
                      std::to_string(longestKey >> 10) + " KiB");
}

} // namespace zo
