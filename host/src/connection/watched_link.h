// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_state.h"
#include "connection/loss_rule.h"

#include <zo/broker.h>

#include <functional>
#include <map>
#include <vector>

/// A link as a broker has it.
struct MonitoredLink
{
    std::function<ZoLinkStatus()> status;
    std::function<void(const ZoBrokerOptions& options)> reconnect;
    std::function<void()> disconnect;
    const void* identity = nullptr; ///< the same for all that share it; null: nobody does
};

/// One link that a window watches, with all that use it there: the window itself and its panels.
class WatchedLink
{
public:
    using Time = LossRule::Time;

    /// Who has a link.
    enum class User
    {
        Window,
        Panel
    };

    /// A link that is down for less has cost nobody a value: it is shown as up.
    static constexpr std::chrono::milliseconds fGrace{300};

    WatchedLink(MonitoredLink link, LossRule::Limit limit);

    void add(int number, User user);
    void remove(int number) { fUsers.erase(number); }
    bool has(int number) const { return fUsers.count(number) > 0; }
    bool isUsed() const { return !fUsers.empty(); }
    bool isSharedWith(const MonitoredLink& other) const;

    const MonitoredLink& link() const { return fLink; }
    bool isLost() const { return fRule.state() == LossRule::State::Lost; }
    void setLimit(LossRule::Limit limit) { fRule.setLimit(limit); }

    /// Asks the link how it is. Returns the users that are to be told that it is lost.
    std::vector<int> look(Time now);
    /// As it was at the last look.
    const ConnectionState& state() const { return fState; }
    /// The user knows which panels have stopped.
    void forgetStopped();

private:
    void count();

    /// What is known of one user.
    struct Known
    {
        User user;
        bool isStopped; ///< was told of a loss
    };

    MonitoredLink fLink;
    LossRule fRule;
    std::map<int, Known> fUsers;
    ConnectionState fState;
};
