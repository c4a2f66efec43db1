// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/expected_traffic.h"
#include "simulation/fault.h"

#include <link/link_machine.h>

#include <optional>
#include <random>
#include <string>
#include <vector>

/// The behaviour that the machine of a link promises, told a second time from its contract: what
/// it does at each event, and when it wants to be woken. Where the machine may choose, it follows.
/// Each operation comes after the machine was told the same.
class ExpectedLink
{
public:
    using Time = zo::SteadyClock::time_point;
    using Call = ExpectedTraffic::Call;
    using Settings = std::shared_ptr<const zo::LinkSettings>;
    using Addresses = std::vector<zo::LinkAddress>;

    ExpectedLink(const zo::LinkMachine& machine, Settings settings, std::uint32_t seed);

    /// Before each event: what the machine did that follows from nothing outside. Memory may run
    /// out in the middle of it, and of spoilt bytes it may notice the first already.
    void begin(Time now, bool hasGoneDown, bool hasFailed);

    void start();
    void lookedUp(int number, const Addresses& addresses, const std::string& problem);
    void connected(zo::ConnectionId connection);
    void secured(zo::ConnectionId connection);
    void received(zo::ConnectionId connection, const Arrival& arrival);
    void written(zo::ConnectionId connection);
    void closed(zo::ConnectionId connection, const std::string& problem);
    void refused(zo::ConnectionId connection, const std::string& problem);
    void call(const Call& call);
    void givenUp(const Call& call);
    void woken();
    void failed();
    void reconnect(Settings settings);
    void stop();

    /// Throws Violation when this is not what is expected next.
    void take(const zo::LinkAction::Any& action);
    /// After all actions of an event. Throws Violation when some are missing, or the machine
    /// tells or awaits anything else.
    void settle();

    LinkDoing doing() const;
    /// Where a wait lay in what it could have been, from 0 to 1, if one has just begun.
    std::optional<double> takeWait();
    /// The latest moment at which a link whose network has become good at `now` is up.
    Time upAt(Time now) const;
    const zo::LinkSettings& settings() const { return *fSettings; }

private:
    enum class Stage
    {
        Waiting,
        LookingUp,
        Connecting,
        Securing,
        Greeting,
        Up,
        Refused,
        Stopped
    };

    bool isTrying() const { return fStage >= Stage::LookingUp && fStage <= Stage::Greeting; }
    bool isTalking() const { return fStage == Stage::Greeting || fStage == Stage::Up; }
    bool isStopped() const { return fStage == Stage::Stopped; }
    bool failsHere();
    void beginAttempt();
    void lookUp();
    void race(const Addresses& addresses);
    void connectNext();
    bool leaveRace(zo::ConnectionId connection);
    void greet();
    void judgeGreeting();
    void goOn();
    void goDown(Stage next, const std::string& cause);
    void fail(const std::string& problem);
    void tell(bool isUp, const zo::SharedText& cause);
    std::string tooLate() const;
    Time dueAt() const;
    void beginWait();

    const zo::LinkMachine& fMachine;
    Settings fSettings;
    ExpectedActions fActions;
    ExpectedTraffic fTraffic;

    Time fNow;
    bool fHasGoneDown = false;
    bool fHasFailed = false;
    bool fIsEndingLate = false; ///< memory ran out while late calls were ended

    Stage fStage = Stage::Waiting;
    zo::LinkCondition fCondition;
    std::chrono::milliseconds fBound; ///< of the next wait
    std::mt19937 fRandom;             ///< the waits follow from the seed
    Time fRetryAt;
    std::optional<double> fWait;
    Time fAttemptEnd;
    Time fUpSince;

    int fLookUps = 0;
    bool fIsLookingUp = false; ///< the newest of them is not answered
    Time fLookUpSince;
    std::chrono::seconds fLookUpPatience{10};
    Addresses fFound;

    Addresses fCourse; ///< not yet tried
    std::vector<zo::ConnectionId> fRunning;
    Time fNextAt;
    std::chrono::nanoseconds fLead{0};
    zo::ConnectionId fNewest = 0;
    zo::ConnectionId fCurrent = 0;
};
