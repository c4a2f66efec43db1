// SPDX-License-Identifier: MIT
#include "sign_of_life.h"

#include <kit/sign_of_life.h>

#include <ctime>
#include <utility>

SignOfLife::SignOfLife(ZoMemoryProxy memory, bool isShared)
    : fMemory(std::move(memory)), fIsShared(isShared)
{
}

void SignOfLife::tell()
{
    fTried = std::chrono::steady_clock::now();
    const std::int64_t now = std::time(nullptr);
    if (!fIsShared || now == fTold)
        return;
    fMemory.setData(kit::aliveKey, now);
    fTold = now;
}

std::optional<std::chrono::steady_clock::time_point> SignOfLife::due() const
{
    if (!fIsShared)
        return {};
    return fTried + std::chrono::seconds(1);
}
