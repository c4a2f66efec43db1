// SPDX-License-Identifier: MIT
#pragma once

#include "link/action_queue.h"
#include "link/address_race.h"
#include "link/look_ups.h"
#include "link/node.h"

#include <optional>
#include <vector>

namespace zo {

/// The way to one of several nodes: each is looked up, the addresses that are found race, and the
/// first that answers wins. So a node that is dead, or nowhere to be found, costs a moment. A part
/// of LinkMachine.
class Approach
{
public:
    using Time = SteadyClock::time_point;
    using Addresses = std::vector<LinkAddress>;

    /// What an answer to a look-up means for the attempt under way.
    enum class News
    {
        None,
        Way, ///< another node has entered the race
        End  ///< there is nothing left to try
    };

    explicit Approach(ActionQueue& actions);

    /// Begins with `nodes`, the likeliest first; all must have had their turn at `end`. Whether
    /// some of them are in the race already, or else all are looked up first. Those that are not
    /// `given` are passed over while too many look-ups are not answered.
    bool begin(Time now, Time end, const Nodes& nodes, const Nodes& given);
    /// An answer that helps the attempt that is under way.
    News lookedUp(Time now, int number, const Addresses& addresses);
    /// One that comes between two attempts: it serves the next.
    void lookedUpMeanwhile(int number, const Addresses& addresses);

    /// Starts with the next address, if its turn has come.
    void connectNext(Time now);
    /// The node of `connection`, if it was running. It is out now, and another may start at once.
    NodePtr leave(ConnectionId connection) { return fRace ? fRace->leave(connection) : nullptr; }
    /// Where it leads; null: to any of several.
    const NodePtr& goal() const { return fGoal; }
    /// Whether there is nothing left to try.
    bool isOver() const;
    /// A link is up: addresses that were found meanwhile are of no use any more.
    void forgetFound() noexcept;
    /// Ends it, and closes what still runs.
    void end() noexcept;
    /// When the next address may start.
    Time nextAt() const { return fRace ? fRace->nextAt() : Time::max(); }

private:
    /// A node, and what is known of where it is.
    struct Place
    {
        NodePtr node;
        LookUps lookUps;
        Addresses found;        ///< for the next attempt, which needs no look-up then
        bool isAwaited = false; ///< the attempt waits for its addresses
    };
    /// A look-up that is not answered.
    struct Asked
    {
        int number;
        NodePtr node;
        Time since;
    };

    Place& placeOf(const NodePtr& node);
    Place* answered(int number);
    bool hasRoom(Time now);
    void enter(Time now, Place& place, const Addresses& addresses);
    void lookUp(Time now, Place& place);

    ActionQueue& fActions;
    std::vector<Place> fPlaces; ///< has room for all, as has the next: no attempt begins in vain
    std::vector<Asked> fAsked;
    std::optional<AddressRace> fRace;
    NodePtr fGoal;
    Time fEnd;
    int fNewestLookUp = 0;
    ConnectionId fNewest = 0;
};

} // namespace zo
