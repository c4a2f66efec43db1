// SPDX-License-Identifier: MIT
#pragma once

#include "link/exchange.h"

#include <future>

namespace zo {

/// An exchange for which the thread that makes it waits.
class Call : public Exchange
{
public:
    using Exchange::Exchange;

    void end(const SharedText& problem, const SentSpan& sent) noexcept override;

    /// Waits for the end; false when it has not come at `time`. Throws ZoError when the exchange
    /// failed.
    bool waitUntilDone(SteadyClock::time_point time) const;
    /// When it has ended.
    const SentSpan& sent() const { return fAwaitedEnd.get().sent; }
    SteadyClock::time_point endedAt() const { return fAwaitedEnd.get().at; }

private:
    struct End
    {
        SharedText problem;
        SentSpan sent;
        SteadyClock::time_point at;
    };

    std::promise<End> fEnd;
    const std::shared_future<End> fAwaitedEnd = fEnd.get_future();
};

/// One for something else than the values of a list.
class SideCall : public Call
{
public:
    using Call::Call;

    bool isOfList() const override { return false; }
};

} // namespace zo
