// SPDX-License-Identifier: MIT
#pragma once

#include "link/shared_text.h"

#include <string>

namespace zo {

/// Overwrites what `secret` holds, and empties it.
void wipe(std::string& secret) noexcept;

/// A shared text that is overwritten when the last of its holders has gone.
SharedText secretText(std::string text);

} // namespace zo
