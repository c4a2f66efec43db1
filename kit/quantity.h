// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kit {

/// The time that `text` spells with its unit, as 90s, 1.5h or 2d do; a millisecond to ten years.
/// Nothing when it spells none.
std::optional<std::chrono::milliseconds> timeIn(const std::string& text);

/// The same for a size in bytes, as in 100MB.
std::optional<std::uint64_t> sizeIn(const std::string& text);

/// The time in seconds, as 1700000000.5, that `text` spells; at most some 3,000 years. Nothing when
/// it spells none.
std::optional<std::chrono::milliseconds> secondsIn(std::string_view text);

/// `time` in seconds with three decimals, in any locale; `time` is not negative.
std::string secondsText(std::chrono::milliseconds time);

/// The time that `text` spells. Throws UsageError that names `option`.
std::chrono::milliseconds timeFrom(const std::string& option, const std::string& text);

/// `bytes` for people, as in "12.3 MB".
std::string sizeText(std::uint64_t bytes);

} // namespace kit
