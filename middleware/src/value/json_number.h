// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

class ZoValue;

namespace zo {

/// Whether the whole of `text` is a JSON number; if so, `value` becomes that int or float.
bool readJsonNumber(std::string_view text, ZoValue& value);

} // namespace zo
