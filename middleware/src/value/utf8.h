// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

namespace zo {

/// The longest beginning of `text` that has at most `size` bytes and does not end inside a UTF-8
/// character. Bytes that are no UTF-8 count as characters of their own.
std::string_view wholeCharacters(std::string_view text, std::size_t size);

/// How many bytes the UTF-8 character has that begins at `position`, which is inside `text`; 0
/// when what stands there is none.
std::size_t characterAt(std::string_view text, std::size_t position);

} // namespace zo
