// SPDX-License-Identifier: MIT
#pragma once

#include "link/deadline.h"
#include "link/inquiry.h"

#include <future>
#include <memory>
#include <string>

namespace zo {

/// An inquiry that somebody waits for, on its way to the robot and back. The caller's thread makes
/// it and waits; the I/O thread sends it, fills the sink, and ends it. Whoever is late finds it
/// still whole: both threads own it.
class Exchange : public Inquiry
{
public:
    /// It must be over at `deadline`, however slowly the answer comes.
    Exchange(std::string name, SharedText bytes, int replies, std::shared_ptr<ReplySink> sink,
             const Deadline& deadline);

    const Deadline& deadline() const { return fDeadline; }
    /// What is wrong when it is not over at its deadline.
    std::string lateness() const;

    /// The end: with a problem, or null when the sink has the whole answer. Called on the I/O
    /// thread, once at most.
    void end(const SharedText& problem) noexcept;

    /// Waits for the end; false when it has not come at `time`. Throws ZoError when the exchange
    /// failed.
    bool waitUntilDone(SteadyClock::time_point time) const;

private:
    const Deadline fDeadline;
    std::promise<SharedText> fEnd; ///< the problem, or null
    const std::shared_future<SharedText> fAwaitedEnd = fEnd.get_future();
};

} // namespace zo
