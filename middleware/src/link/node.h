// SPDX-License-Identifier: MIT
#pragma once

#include <zo/address.h>

#include <memory>
#include <vector>

namespace zo {

/// A server that a link may go to. Handing it on needs no memory, and so cannot fail.
using NodePtr = std::shared_ptr<const ZoAddress>;
using Nodes = std::vector<NodePtr>;

} // namespace zo
