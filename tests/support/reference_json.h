// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

/// Whether `text` is one JSON value by the letter of the grammar, except that its bytes are not
/// checked to be UTF-8: a slow and simple judge of quick parsers. `nesting` becomes the number of
/// arrays and objects that enclose its innermost value.
bool isJsonByTheGrammar(std::string_view text, int& nesting);
