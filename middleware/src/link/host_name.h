// SPDX-License-Identifier: MIT
#pragma once

#include <zo/address.h>

#include <string>

namespace zo {

/// Whether each byte of `host` is one that names and addresses may have: nothing blank, no control
/// characters, and none that has a meaning around a host.
bool canBeHost(const std::string& host);

/// Whether `node` can be the address of a server, whoever told it: other servers name it in ASCII,
/// and by "?" when they do not know it.
bool canBeNode(const ZoAddress& node);

/// Whether `host` is an IPv4 or IPv6 address, which needs no look-up.
bool isNumericHost(const std::string& host);

} // namespace zo
