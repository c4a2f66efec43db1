// SPDX-License-Identifier: MIT
#pragma once

#include <zo/value.h>

namespace zo {

class Link;

/// The names of all text keys of the robot behind `link`, each once: an array of strings.
/// Throws ZoError when it takes too long, or more than 64 MiB of memory.
ZoValue namesOf(Link& link);

} // namespace zo
