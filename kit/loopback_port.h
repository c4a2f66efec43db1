// SPDX-License-Identifier: MIT
#pragma once

#include <kit/descriptor.h>

namespace kit {

/// A socket that has a port of 127.0.0.1 for itself as long as it is open. Throws
/// std::system_error.
Descriptor socketWithLoopbackPort();

/// The port that `socket` has.
int portOf(const Descriptor& socket);

/// A port of 127.0.0.1 that is free now; somebody else may take it before it is used. Throws
/// std::system_error.
int freeLoopbackPort();

/// Whether a server of this user could listen there now.
bool isLoopbackPortFree(int port);

} // namespace kit
