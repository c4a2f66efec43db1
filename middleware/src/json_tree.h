#pragma once

#include <string_view>

class ZoValue;

/// Whether the whole of `text` is one JSON value, with no white space around it; if so, `value`
/// becomes it. For arrays, and for strings with escapes: what needs a parser.
bool readJsonTree(std::string_view text, ZoValue& value);
