// SPDX-License-Identifier: MIT
#include "random_password.h"

#include <kit/hex.h>

#include <array>
#include <cerrno>
#include <sys/random.h>
#include <system_error>

std::string randomPassword()
{
    std::array<char, 32> bytes{};
    if (::getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
        throw std::system_error(errno, std::generic_category(), "no random password");
    std::string password;
    for (const char byte : bytes)
        kit::appendHex(byte, password);
    return password;
}
