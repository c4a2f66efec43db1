// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

class ZoValue;

namespace zo {

/// Whether the whole of `text` is one JSON value, with no white space around it; if so, `value`
/// becomes it. For arrays, and for strings with escapes: what needs a parser. `elements` becomes
/// fewer by the elements of all arrays; one too many makes it negative and ends the reading.
bool readJsonTree(std::string_view text, ZoValue& value, std::int64_t& elements);

} // namespace zo
