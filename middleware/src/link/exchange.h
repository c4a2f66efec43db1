// SPDX-License-Identifier: MIT
#pragma once

#include "link/asking.h"
#include "link/deadline.h"
#include "link/inquiry.h"

#include <memory>
#include <string>
#include <utility>

namespace zo {

/// An inquiry that somebody awaits, on its way to the robot and back. Another thread than the I/O
/// thread may make it; the I/O thread sends it, fills the sink, and ends it. Whoever is late finds
/// it still whole: both own it.
class Exchange : public Inquiry
{
public:
    /// It must be over at `deadline`, however slowly the answer comes. Exchanges of the same
    /// `flow`, if it is not null, are sent in their order.
    template <class Commands>
    Exchange(std::string name, SharedText bytes, Commands commands, std::shared_ptr<ReplySink> sink,
             const Deadline& deadline, const void* flow = nullptr)
        : Inquiry(std::move(name), std::move(bytes), std::move(commands), std::move(sink)),
          fDeadline(deadline),
          fFlow(flow)
    {
    }
    virtual ~Exchange() = default;
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;

    const Deadline& deadline() const { return fDeadline; }
    const void* flow() const { return fFlow; }
    /// Whether its answer is that to getListData, of which the link's status tells.
    virtual bool isOfList() const { return true; }
    /// What is wrong when it is not over at its deadline.
    std::string lateness() const
    {
        return "no reply to " + name() + " within " + inMilliseconds(fDeadline.allowed);
    }

    /// The end: with a problem, or null when the sink has the whole answer. Called on the I/O
    /// thread, once at most.
    virtual void end(const SharedText& problem, const SentSpan& sent) noexcept = 0;

private:
    const Deadline fDeadline;
    const void* const fFlow;
};

} // namespace zo
