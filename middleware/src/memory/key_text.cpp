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

bool canBeKey(const std::string& key)
{
    return key.size() <= longestKey;
}

void checkKey(const std::string& key)
{
    if (!canBeKey(key))
        throw ZoError("key " + quotedKey(key) + " is longer than " +
                      std::to_string(longestKey >> 10) + " KiB");
}

} // namespace zo
