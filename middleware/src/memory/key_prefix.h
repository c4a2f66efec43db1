// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zo {

/// A robot may share its server: what the server calls its keys then begins with a prefix, which
/// their names are without.

/// The name of the key that the server calls `whole`; nothing: it is no key of this robot.
std::optional<std::string_view> nameBehind(std::string_view prefix, std::string_view whole);

/// The server's pattern of all keys behind `prefix` whose names end with `ending`. Empty when that
/// is every key there is.
std::string patternOf(std::string_view prefix, std::string_view ending);

} // namespace zo
