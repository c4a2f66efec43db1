#pragma once

#include "peer.h"
#include "wire/reply_sink.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>

using SteadyClock = std::chrono::steady_clock;

/// When an exchange must be over, and how long that was when it began, for messages.
struct Deadline
{
    SteadyClock::time_point at;
    std::chrono::milliseconds allowed;

    static Deadline after(SteadyClock::time_point start, std::chrono::microseconds allowed)
    {
        return {start + allowed, std::chrono::round<std::chrono::milliseconds>(allowed)};
    }
};

/// One request on its way to the robot and back. The caller's thread makes it and waits; the I/O
/// thread sends it, fills the sink, and ends it. Whoever is late finds it still whole: both
/// threads own it.
class Exchange
{
public:
    /// `name` is the command, for messages; `bytes` the encoded request, which is answered by
    /// `replies` replies.
    Exchange(std::string name, std::shared_ptr<const std::string> bytes, int replies,
             std::shared_ptr<ReplySink> sink, const Deadline& deadline);

    const std::string& name() const { return fName; }
    const std::shared_ptr<const std::string>& bytes() const { return fBytes; }
    int replies() const { return fReplies; }
    ReplySink& sink() const { return *fSink; }
    SteadyClock::time_point deadline() const { return fDeadline.at; }
    /// Why a caller gives up at the deadline: "no reply to MGET within 250 ms".
    std::string lateness() const;

    /// Called on the I/O thread, once each at most; what comes after the first is ignored.
    void finish();
    void fail(const std::string& text);

    /// Waits for the end or the deadline; false at the deadline. Throws ZoError when it failed.
    bool waitUntilDone();

private:
    void end(const std::string& problem);

    const std::string fName;
    const std::shared_ptr<const std::string> fBytes;
    const int fReplies;
    const std::shared_ptr<ReplySink> fSink;
    const Deadline fDeadline;

    std::mutex fMutex;
    std::condition_variable fChanged;
    bool fDone = false;
    std::string fProblem;
};
