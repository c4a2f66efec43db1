// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

namespace zo {

/// The bytes of the control character or line break that `text` begins with: one that terminals
/// obey, or readers take for the end of a line. These are U+0000 to U+001F, U+007F to U+009F, and
/// the line and the paragraph separator, in UTF-8. 0: it begins with something else.
inline std::size_t controlCharacterSize(std::string_view text)
{
    const auto byte = [text](std::size_t at) {
        return at < text.size() ? static_cast<unsigned char>(text[at]) : 0xFFU;
    };
    if (byte(0) < 0x20 || byte(0) == 0x7F)
        return 1;
    if (byte(0) == 0xC2 && byte(1) >= 0x80 && byte(1) < 0xA0)
        return 2;
    return byte(0) == 0xE2 && byte(1) == 0x80 && (byte(2) == 0xA8 || byte(2) == 0xA9) ? 3 : 0;
}

} // namespace zo
