// SPDX-License-Identifier: MIT
#pragma once

#include "link/inquiry.h"

#include <zo/value.h>

#include <string>
#include <string_view>
#include <vector>

namespace zo {

/// Throws ZoError, naming `key`, when the key behind its `prefix` or its `text` is larger than a
/// reply may be: it could be stored, but never read again.
void checkStorable(std::string_view prefix, const std::string& key, const std::string& text);

/// Many values on their way into a robot's memory: commands of so many pairs at most that they do
/// not hold up the robot's other clients.
struct StoreRequest
{
    SharedText bytes;
    Inquiry::Parts parts;          ///< its commands
    std::vector<std::string> keys; ///< without the prefix
};

/// The pairs of setListData, encoded, to be stored behind `prefix`. Throws ZoError when one of them
/// cannot be stored.
StoreRequest encodeStoreRequest(const ZoValue& pairs, std::string_view prefix = {});

} // namespace zo
