// SPDX-License-Identifier: MIT
#pragma once

#include "support/request_for.h"

#include <memory/follower.h>

#include <QtTest>

#include <algorithm>
#include <deque>
#include <functional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

/// A follower, its callers, and a link to a robot so far away, in the test's own time.
class FollowerBench
{
public:
    using Time = zo::Follower::Time;
    using Duration = zo::Pace::Duration;
    using Begun = zo::Follower::Begun;
    using Names = std::set<std::string>;

    static constexpr std::chrono::milliseconds fPeriod{100};

    explicit FollowerBench(bool canTell = true, Duration roundTrip = std::chrono::milliseconds(1))
        : way(roundTrip)
    {
        follower.cameUp(canTell);
    }

    // Keys are called "0", "1", ...
    static std::string nameOf(int key) { return std::to_string(key); }
    static Names namesOf(int first, int count)
    {
        const auto names = listOf(first, count);
        return {names.begin(), names.end()};
    }
    static ZoValue requestOf(int first, int count) { return requestFor(listOf(first, count)); }
    static Names keysOf(const Begun& round)
    {
        Names names;
        for (const auto* entry : round.round->plan()->keys())
            names.insert(entry->first);
        return names;
    }
    static int commandsOf(const Begun& round)
    {
        return static_cast<int>(round.round->plan()->commands().size());
    }

    // Step by step:

    zo::Follower::Asked ask(const ZoValue& request, int caller = 0)
    {
        return follower.ask(now, {this + caller, {}}, request);
    }
    /// The next call in its rhythm.
    zo::Follower::Asked call(const ZoValue& request)
    {
        now = called += fPeriod;
        return ask(request);
    }
    /// ... and what is to be done until the one behind it.
    void poll(const ZoValue& request)
    {
        call(request);
        while (follower.wakeAt() < called + fPeriod)
            answer(begin());
    }
    /// The next round, when its time has come.
    Begun begin()
    {
        if (follower.wakeAt() < Time::max())
            now = std::max(now, follower.wakeAt());
        const auto round = follower.begin(now);
        return round ? *round : throw std::logic_error("no round begins");
    }
    bool begins() { return follower.begin(now).has_value(); }
    void answerAll()
    {
        while (const auto round = follower.begin(now))
            answer(*round);
    }
    void answer(const Begun& round)
    {
        reply(round);
        end(round);
    }
    /// The replies come ...
    void reply(const Begun& round) const
    {
        const zo::RoundPlan& plan = *round.round->plan();
        for (int command = 0; command < commandsOf(round); ++command) {
            const int reply = (command + 1) * plan.repliesPerCommand() - 1;
            const auto [first, count, end] = plan.commands()[static_cast<std::size_t>(command)];
            if (isRefused(plan, first, count)) {
                QVERIFY(round.round->take({reply, 0, 0}, {zo::ReplyKind::Error, "NOPERM no"}));
                continue;
            }
            const std::string text = textOf(*round.round);
            QVERIFY(round.round->take({reply, 0, 0}, {zo::ReplyKind::Array, {}, count}));
            for (int i = 0; i < count; ++i)
                QVERIFY(round.round->take({reply, 1, i}, {zo::ReplyKind::Text, text}));
        }
    }
    /// ... and are all there.
    void end(const Begun& round) { follower.ended(round, true, ++order, now, way); }

    // By itself, as rounds are due and the way brings their answers:

    void passUntil(Time until)
    {
        for (Time next = nextEvent(); next <= until; next = nextEvent()) {
            now = std::max(now, next);
            if (!fUnderWay.empty() && fUnderWay.front().arrival <= now)
                arrive();
            beginAll();
        }
        now = until;
    }
    /// How long ago the values were asked for that the call gets, when `textOf` is `timeOfBegin`;
    /// the longest time, if it gets none.
    Duration callNow(const ZoValue& request)
    {
        const auto asked = ask(request);
        beginAll();
        const auto* begin =
            asked.values ? std::get_if<std::int64_t>(&asked.values->front().data()) : nullptr;
        return begin ? now - Time(Duration(*begin)) : Duration::max();
    }
    static std::string timeOfBegin(const zo::Round& round)
    {
        return std::to_string(round.begin().time_since_epoch().count());
    }

    zo::Follower follower;
    Time now{std::chrono::hours(1)};
    Time called = now;
    Duration way;       ///< there and back
    Duration perKey{0}; ///< what each adds on a way that carries one after the other
    std::function<std::string(const zo::Round&)> textOf = [](const zo::Round&) {
        return std::string("1");
    };                       ///< what all keys are
    Names refused;           ///< by the robot
    std::uint64_t order = 0; ///< of what was sent
    std::deque<Begun> begun; ///< all rounds that began by themselves

private:
    struct UnderWay
    {
        Begun round;
        Time arrival;
    };

    static std::vector<std::string> listOf(int first, int count)
    {
        std::vector<std::string> names;
        for (int key = first; key < first + count; ++key)
            names.push_back(nameOf(key));
        return names;
    }
    bool isRefused(const zo::RoundPlan& plan, int first, int count) const
    {
        const auto key = plan.keys().begin() + first;
        return std::any_of(key, key + count,
                           [this](const auto* entry) { return refused.count(entry->first) > 0; });
    }
    Time nextEvent() const
    {
        return std::min(fUnderWay.empty() ? Time::max() : fUnderWay.front().arrival,
                        follower.wakeAt());
    }
    void beginAll()
    {
        while (const auto round = follower.begin(now)) {
            const auto keys = static_cast<Duration::rep>(round->round->plan()->keys().size());
            fFreeAt = std::max(fFreeAt, now) + keys * perKey;
            begun.push_back(*round);
            fUnderWay.push_back({*round, fFreeAt + way});
        }
    }
    void arrive()
    {
        const Begun round = fUnderWay.front().round;
        fUnderWay.pop_front();
        answer(round);
    }

    std::deque<UnderWay> fUnderWay;
    Time fFreeAt{};
};
