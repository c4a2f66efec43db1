// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// 64 hexadecimal digits that nobody can guess. Throws std::system_error.
std::string randomPassword();
