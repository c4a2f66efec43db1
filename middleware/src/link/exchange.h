// SPDX-License-Identifier: MIT
#pragma once

#include "link/deadline.h"
#include "link/shared_text.h"
#include "wire/reply_sink.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>

namespace zo {

/// One request on its way to the robot and back. The caller's thread makes it and waits; the I/O
/// thread sends it, fills the sink, and ends it. Whoever is late finds it still whole: both
/// threads own it.
class Exchange
{
public:
    /// `name` is the command, for messages; `bytes` the encoded request, which is answered by
    /// `replies` replies. It must be over at `deadline`, however slowly the answer comes.
    Exchange(std::string name, SharedText bytes, int replies, std::shared_ptr<ReplySink> sink,
             const Deadline& deadline);

    const std::string& name() const { return fName; }
    const SharedText& bytes() const { return fBytes; }
    int replies() const { return fReplies; }
    ReplySink& sink() const { return *fSink; }
    const Deadline& deadline() const { return fDeadline; }
    /// What is wrong when it is not over at its deadline.
    std::string lateness() const;

    /// The end: with a problem, or null when the sink has the whole answer. Called on the I/O
    /// thread; what comes after the first is ignored.
    void end(const SharedText& problem) noexcept;

    /// Waits for the end, which comes at the deadline at the latest; false when the I/O thread is
    /// held up even longer. Throws ZoError when the exchange failed.
    bool waitUntilDone();

private:
    const std::string fName;
    const SharedText fBytes;
    const int fReplies;
    const std::shared_ptr<ReplySink> fSink;
    const Deadline fDeadline;

    std::mutex fMutex;
    std::condition_variable fChanged;
    bool fDone = false;
    SharedText fProblem;
};

} // namespace zo
