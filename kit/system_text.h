// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <system_error>

namespace kit {

/// What the system calls `error`, an errno.
inline std::string messageOf(int error)
{
    return std::generic_category().message(error);
}

} // namespace kit
