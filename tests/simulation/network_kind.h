// SPDX-License-Identifier: MIT
#pragma once

/// What the way between followers and their robot is like.
enum class NetworkKind
{
    Near, ///< a cable, or good Wi-Fi
    Far,  ///< anything
    Poor  ///< Wi-Fi at the edge of its reach
};
constexpr int networkKinds = 3;
const char* nameOf(NetworkKind kind);
