// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zo {

/// Puts together what arrives in parts, and copies nothing that arrives whole. It never holds more
/// than has arrived, whatever was announced.
class Gatherer
{
public:
    /// The next `size` bytes, taken off `bytes`, once all of them are there: until the next call.
    /// While some are missing it keeps those that are there.
    std::optional<std::string_view> take(std::string_view& bytes, std::size_t size);

    /// The next bytes up to "\n", which is the last of them, in the same way.
    std::optional<std::string_view> takeLine(std::string_view& bytes);

    /// What is there so far of the piece whose end is missing.
    const std::string& kept() const { return fKept; }

private:
    void forget();
    std::optional<std::string_view> end(std::string_view& bytes, std::size_t size);
    void keep(std::string_view& bytes);

    std::string fKept;
    bool fIsWhole = false; ///< what is kept was handed out
};

} // namespace zo
