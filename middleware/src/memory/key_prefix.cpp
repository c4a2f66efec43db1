// SPDX-License-Identifier: MIT
#include "memory/key_prefix.h"

namespace zo {

namespace {

/// `text` as a pattern that nothing else matches.
std::string literally(std::string_view text)
{
    std::string pattern;
    for (const char character : text) {
        if (std::string_view("*?[]\\").find(character) != std::string_view::npos)
            pattern += '\\';
        pattern += character;
    }
    return pattern;
}

} // namespace

std::optional<std::string_view> nameBehind(std::string_view prefix, std::string_view whole)
{
    if (whole.substr(0, prefix.size()) != prefix)
        return {};
    return whole.substr(prefix.size());
}

std::string patternOf(std::string_view prefix, std::string_view ending)
{
    if (prefix.empty() && ending.empty())
        return {};
    return literally(prefix) + "*" + literally(ending);
}

} // namespace zo
