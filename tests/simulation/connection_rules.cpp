// SPDX-License-Identifier: MIT
#include "simulation/connection_rules.h"

#include "simulation/action_text.h"
#include "simulation/violation.h"

#include <algorithm>

using namespace zo;

namespace {

std::string text(ConnectionId connection)
{
    return "connection " + std::to_string(connection);
}

} // namespace

void ConnectionRules::take(const LinkAction::Any& action, bool hasTls)
{
    takeRefusal(action);
    if (const auto* connect = std::get_if<LinkAction::Connect>(&action)) {
        ::require(connect->connection > fNewest, "no connection is used twice",
                  [&] { return text(connect->connection); });
        ::require(std::all_of(fOpen.begin(), fOpen.end(),
                              [](const Open& open) { return open.phase == Phase::Connecting; }),
                  "there is one attempt at a time", [&] { return text(connect->connection); });
        fNewest = connect->connection;
        fOpen.push_back({fNewest, Phase::Connecting, false, false});
    } else if (const auto* close = std::get_if<LinkAction::Close>(&action)) {
        require(close->connection, "closed");
        fOpen.erase(fOpen.begin() + (find(close->connection) - fOpen.data()));
    } else if (const auto* tls = std::get_if<LinkAction::StartTls>(&action)) {
        ::require(hasTls && require(tls->connection, "secured").phase == Phase::Connected,
                  "encryption is agreed on once", [&] { return text(tls->connection); });
    } else if (const auto* write = std::get_if<LinkAction::Write>(&action)) {
        Open& open = require(write->connection, "written to");
        ::require(open.phase == (hasTls ? Phase::Secured : Phase::Connected),
                  "nothing is sent too early", [&] { return text(write->connection); });
        ::require(!open.isWriting, "there is one write at a time",
                  [&] { return text(write->connection); });
        ::require(!open.isTurnedAway, "nothing is sent after a failed greeting",
                  [&] { return text(write->connection); });
        ::require(write->size > 0 && write->offset + write->size <= write->bytes->size(),
                  "a write has bytes", [&] { return text(write->connection); });
        open.isWriting = true;
    }
}

void ConnectionRules::takeRefusal(const LinkAction::Any& action)
{
    const bool isAttempt = std::holds_alternative<LinkAction::LookUp>(action) ||
                           std::holds_alternative<LinkAction::Connect>(action);
    ::require(!isAttempt || !fIsRefused, "a refusal is final until there are other settings",
              [&] { return actionText(action); });
    if (const auto* tell = std::get_if<LinkAction::Tell>(&action))
        fIsRefused = fIsRefused || tell->condition.isRefused;
}

void ConnectionRules::written(ConnectionId connection)
{
    if (Open* const open = find(connection))
        open->isWriting = false;
}

// A call that is refused is the caller's own affair: its words are fine.
void ConnectionRules::received(ConnectionId connection, const Arrival& arrival)
{
    Open* const open = find(connection);
    if (!open)
        return;
    open->isTurnedAway = open->isTurnedAway || arrival.mustNotice;
    for (const Saying* saying = arrival.first; saying != arrival.last; ++saying)
        open->isTurnedAway = open->isTurnedAway || saying->word == Word::NeedsLogin;
}

void ConnectionRules::end() const
{
    ::require(fOpen.empty(), "each connection is closed",
              [&] { return text(fOpen.front().connection); });
}

void ConnectionRules::advance(ConnectionId connection, Phase phase)
{
    if (Open* const open = find(connection))
        open->phase = phase;
}

ConnectionRules::Open* ConnectionRules::find(ConnectionId connection)
{
    const auto found = std::find_if(fOpen.begin(), fOpen.end(), [&](const Open& open) {
        return open.connection == connection;
    });
    return found == fOpen.end() ? nullptr : &*found;
}

ConnectionRules::Open& ConnectionRules::require(ConnectionId connection, const char* what)
{
    Open* const open = find(connection);
    ::require(open != nullptr, "only an open connection is used",
              [&] { return text(connection) + " is " + what + " and not open"; });
    return *open;
}
