// SPDX-License-Identifier: MIT
#pragma once

namespace kit {

/// A port of 127.0.0.1 that is free now; somebody else may take it before it is used. Throws
/// std::system_error.
int freeLoopbackPort();

/// Whether a server of this user could listen there now.
bool isLoopbackPortFree(int port);

} // namespace kit
