// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace zo {

/// How many slots the keys of a cluster of servers are spread over.
constexpr int hashSlots = 16384;

/// The part of `key` that decides about its slot: what the first pair of braces holds, or else,
/// also when that is nothing, all of it.
std::string_view hashTagOf(std::string_view key);

/// Whether all keys that begin with `prefix` are in one slot.
bool hasHashTag(std::string_view prefix);

/// The slot of `key`: the remainder of the CRC16 (XMODEM) of its tag, as the server's public
/// documentation of the cluster tells under "Key distribution model".
int hashSlotOf(std::string_view key);

} // namespace zo
