// SPDX-License-Identifier: MIT
#pragma once

#include <zo/version.h>

#include <string>
#include <vector>

namespace kit {

/// The programs' own version: "0.1.0".
std::string programVersion();

/// What --version prints: first `program` with its version, then `parts`, what it is made of
/// besides the middleware, and the middleware with its parts, a line each.
std::string versionText(const std::string& program, const std::vector<ZoVersion::Part>& parts = {});

} // namespace kit
