// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/answer_stream.h"

#include <link/link_actions.h>
#include <link/link_settings.h>
#include <link/round_trip.h>

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// The actions that a link is expected to ask for. The texts of problems are parts of the real
/// ones.
using ExpectedActions = std::deque<zo::LinkAction::Any>;

/// What goes over a link as its callers and its robot may expect it: told a second time, by
/// someone who knows what each byte of the robot means and so reads none of them. A part of
/// ExpectedLink.
class ExpectedTraffic
{
public:
    using Time = zo::SteadyClock::time_point;
    using Call = std::shared_ptr<zo::Exchange>;
    using Duration = std::chrono::microseconds;

    explicit ExpectedTraffic(ExpectedActions& actions) : fActions(actions) {}

    void open(Time now, zo::ConnectionId connection,
              std::shared_ptr<const zo::LinkSettings> settings);
    void close(const zo::SharedText& problem);

    void add(const Call& call);
    void drop(const Call& call);
    void written(Time now);
    /// Takes what a robot has said; of a greeting, its answers.
    void received(Time now, const Arrival& arrival);
    void learnRoundTrip(const zo::RoundTrip& roundTrip);
    /// Whether all of the greeting is sent and answered; it is over then.
    bool takeGreeting(Time now);
    void sendOn(Time now);
    void goOn(Time now);
    /// Whether the link has been silent for too long.
    bool attend(Time now);

    const std::vector<Word>& greeted() const { return fGreeted; }
    /// Under way or waiting.
    /// Calls are under way, or what remains of one whose caller has gone.
    bool hasCalls() const;
    Time dueAt() const;
    Duration roundTrip() const { return fRoundTrip; }

private:
    /// Something that is asked, or waits for its turn.
    struct Asked
    {
        Call call; ///< null: the link itself asks, or nobody wants to know any more
        std::shared_ptr<const zo::Inquiry> inquiry;
        std::size_t parts = 0;      ///< that have gone out
        std::size_t unanswered = 0; ///< bytes
        bool isAnswered = false;
        zo::SentSpan sent = {};

        bool isOwn() const { return inquiry->name() == "PING"; }
    };
    using AskedPtr = std::shared_ptr<Asked>;

    /// Commands that went out together, and are not answered.
    struct Commands
    {
        AskedPtr asked;
        std::size_t end; ///< behind their bytes, in those of the request
        std::size_t size;
        int missing;     ///< replies
        std::size_t out; ///< so far, in the same way
        bool isAnswered = false;
        Time since{};
    };

    void ask(std::shared_ptr<const zo::Inquiry> inquiry, const Call& call);
    static std::size_t sizeOfNext(const Asked& asked);
    static bool isOut(const Asked& asked) { return asked.parts == asked.inquiry->parts(); }
    bool hasTurn(Time now, const Asked& asked) const;
    void sendFirstOf(Time now, const AskedPtr& asked);
    void write(std::size_t size);
    void answerFirst(Time now);
    void endFirst();
    void takeWhole(Time now);
    bool isBusy() const { return fIsWriting || !fAwaited.empty(); }
    bool isSilent(Time now) const;
    Time sendBy(const Call& call) const;
    Time dueAt(const Asked& asked) const;
    void endLate(Time now);
    std::string lateness(Time now, const Asked& asked) const;
    Duration callPatience() const;
    Duration linkPatience() const;

    ExpectedActions& fActions;
    zo::ConnectionId fConnection = 0;
    std::shared_ptr<const zo::LinkSettings> fSettings;
    std::deque<AskedPtr> fCalls; ///< of somebody, as they came
    std::deque<AskedPtr> fTurn;  ///< not all of it is out
    std::deque<Commands> fAwaited;
    std::deque<AskedPtr> fWhole;
    bool fIsWriting = false;
    bool fIsFirstOfCommands = false;
    std::uint64_t fSlices = 0;
    int fReplies = 0; ///< on this connection
    std::vector<Word> fGreeted;
    bool fIsGreeted = false;
    Time fSilentSince;
    Time fIdleSince;
    bool fIsRoundTripKnown = false;
    Duration fRoundTrip{0};
};

/// What a link with these settings says first.
std::string expectedGreeting(const zo::LinkSettings& settings);
