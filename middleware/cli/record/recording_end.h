// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>

/// The end of a file of rows.
struct RecordingEnd
{
    std::uint64_t wholeSize = 0;        ///< of the file up to the end of its last whole row
    std::optional<std::string> lastRow; ///< without its end; nothing when there is none
};

/// Finds it in the file `descriptor` of `size` bytes, whose header takes `headerSize`. Throws
/// std::system_error when it cannot be read.
RecordingEnd findEnd(int descriptor, std::uint64_t size, std::uint64_t headerSize);

/// The first `size` bytes of the file, or all of them. Throws std::system_error.
std::string startOf(int descriptor, std::uint64_t size);
