// SPDX-License-Identifier: MIT
#pragma once

#include <kit/option_words.h>

namespace kit {

/// What --help says of `options`: one below the other, their texts wrapped in a second column.
std::string optionsText(const Options& options);

} // namespace kit
