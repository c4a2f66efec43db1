// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace zo {

/// What the errors of a server mean, by the words that they begin with.

/// Nobody may do anything without a login.
bool wantsLogin(std::string_view error);

/// This user may not do what was asked: not with this command, or not with these keys.
bool isForbidden(std::string_view error);

/// This user may not touch one of the keys; of others the same command is answered.
bool isKeyForbidden(std::string_view error);

/// The server does not know the command, or not in the way in which it is run.
bool isUnknown(std::string_view error);

/// The server will talk to us when it has got over something. It says so in place of the answer to
/// whatever came first.
bool willPass(std::string_view error);

} // namespace zo
