// SPDX-License-Identifier: MIT
#pragma once

#include <csignal>

/// While it lives, a write of this thread into a pipe whose reader is gone fails like any other
/// write, and does not end the process.
class BrokenPipeShield
{
public:
    BrokenPipeShield();
    ~BrokenPipeShield();
    BrokenPipeShield(const BrokenPipeShield&) = delete;
    BrokenPipeShield& operator=(const BrokenPipeShield&) = delete;

private:
    sigset_t fBefore;
    bool fWasPending;
};
