// SPDX-License-Identifier: MIT
#pragma once

struct ZoLinkStatus;

namespace kit {

/// Throws ZoError, with what `link` says, when it was refused: waiting for it would never end.
void throwIfRefused(const ZoLinkStatus& link);

} // namespace kit
