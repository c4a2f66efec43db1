// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// The first line of the file at `path`, without its line break. Throws UsageError, naming the
/// path, when it cannot be read or holds no password; the text never holds what the file does.
std::string readPassword(const std::string& path);
