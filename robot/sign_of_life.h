// SPDX-License-Identifier: MIT
#pragma once

#include <zo/memory_proxy.h>

#include <chrono>
#include <cstdint>
#include <optional>

/// Tells once a second that a robot is there that shares its server with others.
class SignOfLife
{
public:
    /// Without `isShared` it says nothing: then whoever reaches the server has found the robot.
    SignOfLife(ZoMemoryProxy memory, bool isShared);

    /// To be called again and again, when it is due at the latest. Throws ZoError.
    void tell();
    /// Nothing: never.
    std::optional<std::chrono::steady_clock::time_point> due() const;

private:
    ZoMemoryProxy fMemory;
    const bool fIsShared;
    std::int64_t fTold = 0; ///< seconds since 1970
    std::chrono::steady_clock::time_point fTried = std::chrono::steady_clock::now();
};
