#pragma once

#include "exchange.h"

#include <zo/broker.h>

#include <condition_variable>
#include <mutex>
#include <string>

/// Whether the link is up, as the I/O thread tells and everyone else reads.
class LinkState
{
public:
    explicit LinkState(const std::string& cause);

    void setUp();
    void setDown(const std::string& cause);

    ZoLinkStatus status() const;
    /// Throws ZoError with the cause and the time of the loss while the link is down.
    void throwIfDown() const;
    /// Waits until the first attempt has ended. Throws ZoError when it failed, and at `deadline`.
    void waitForFirstAttempt(SteadyClock::time_point deadline);

private:
    void set(bool connected, const std::string& cause);

    mutable std::mutex fMutex;
    std::condition_variable fChanged;
    ZoLinkStatus fStatus;
    bool fTried = false;
};
