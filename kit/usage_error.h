// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>

namespace kit {

/// The command line asks for something that does not exist; the text says what.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

} // namespace kit
