// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

/// How long a robot may be away before its panels are told that it is lost, as the user set it.
constexpr std::chrono::seconds defaultLossLimit = std::chrono::hours(1);
constexpr std::chrono::seconds longestLossLimit = std::chrono::hours(24 * 7);

/// The default when none was stored, or nonsense.
std::chrono::seconds storedLossLimit();
void storeLossLimit(std::chrono::seconds limit);
