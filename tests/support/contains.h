// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// Whether `text` contains `part`.
inline bool contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}
