// SPDX-License-Identifier: MIT
#include "simulation/network_kind.h"

const char* nameOf(NetworkKind kind)
{
    static constexpr const char* names[] = {"near", "far", "poor"};
    return names[static_cast<int>(kind)];
}
