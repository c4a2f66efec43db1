// SPDX-License-Identifier: MIT
#pragma once

#include <zo/error.h>

#include <functional>
#include <string>
#include <utility>

/// Tells each change of the robot's presence once.
class Presence
{
public:
    explicit Presence(std::function<void(const std::string&)> tell) : fTell(std::move(tell)) {}

    /// Whether it was there before.
    bool lost(const ZoError& error)
    {
        if (fPresent)
            fTell("the robot is lost: " + error.toString());
        return std::exchange(fPresent, false);
    }

    void present()
    {
        if (!fPresent)
            fTell("the robot is back");
        fPresent = true;
    }

private:
    std::function<void(const std::string&)> fTell;
    bool fPresent = true;
};
