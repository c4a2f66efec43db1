// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/answer_stream.h"

#include <link/link_actions.h>
#include <link/link_settings.h>

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

    void add(const Call& call) { fWaiting.push_back(call); }
    void drop(const Call& call);
    void written(Time now);
    /// Takes what a robot has said; of a greeting, its answers.
    void received(Time now, const Arrival& arrival);
    /// Whether all of what was asked is written and answered; it is over then.
    bool takeWhole(Time now);
    void goOn(Time now);
    /// Whether the link has been silent for too long.
    bool attend(Time now);

    const std::vector<Word>& greeted() const { return fGreeted; }
    /// Under way or waiting.
    bool hasCalls() const { return (fAsking && fAsking->call) || !fWaiting.empty(); }
    Time dueAt() const;
    Duration roundTrip() const { return fRoundTrip; }

private:
    /// What is asked at the moment.
    struct Asking
    {
        Call call; ///< null: the link itself asks
        zo::SharedText bytes;
        int missing; ///< replies
        std::size_t offset = 0;
        bool isWritten = false;
        bool isAnswered = false;
        Time since{};
    };

    void ask(Time now, Asking asking);
    void writeOn();
    void sendNext(Time now);
    void endLate(Time now);
    bool isSilent(Time now) const;
    Time sendBy(const Call& call) const;
    void end(const Call& call, const std::string& problem);
    std::string latenessOfAsked(Time now) const;
    Duration callPatience() const;
    Duration linkPatience() const;

    ExpectedActions& fActions;
    zo::ConnectionId fConnection = 0;
    std::shared_ptr<const zo::LinkSettings> fSettings;
    std::optional<Asking> fAsking;
    bool fIsAwaited = false;
    std::deque<Call> fWaiting;
    std::vector<Word> fGreeted;
    Time fSilentSince;
    Time fIdleSince;
    bool fIsRoundTripKnown = false;
    Duration fRoundTrip{0};
};

/// What a link with these settings says first.
std::string expectedGreeting(const zo::LinkSettings& settings);
