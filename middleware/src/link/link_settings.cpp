// SPDX-License-Identifier: MIT
#include "link/link_settings.h"

#include "link/hash_slot.h"
#include "link/host_name.h"
#include "link/redirection.h"
#include "link/secret_text.h"
#include "value/printable.h"

#include <zo/error.h>

#include <algorithm>
#include <tuple>

namespace zo {

namespace {

using std::chrono::milliseconds;

// Far beyond any use, and far from overflow when added to a clock.
constexpr milliseconds longest = std::chrono::hours(24);

constexpr std::size_t longestName = 64;

void confine(ZoBrokerOptions& options)
{
    for (milliseconds* const duration :
         {&options.connectTimeout, &options.exchangeTimeout, &options.callTimeout,
          &options.keyListTimeout, &options.pingInterval, &options.reconnectWait,
          &options.reconnectWaitMax})
        *duration = std::clamp(*duration, milliseconds(1), longest);
    options.timeoutPerKey = std::clamp(options.timeoutPerKey, std::chrono::microseconds(0),
                                       std::chrono::microseconds(std::chrono::seconds(1)));
}

/// The server takes no blanks, control characters, or bytes outside ASCII in such a name.
std::string clientNameOf(const std::string& name)
{
    std::string result = name.empty() ? "zo" : name.substr(0, longestName);
    const auto isUnfit = [](char c) { return c < '!' || c > '~'; };
    std::replace_if(result.begin(), result.end(), isUnfit, '-');
    return result;
}

/// Behind a socket there is but one.
Nodes nodesOf(const ZoAddress& robot, const ZoBrokerOptions& options)
{
    Nodes nodes{std::make_shared<const ZoAddress>(robot)};
    for (const ZoAddress& further : options.furtherAddresses) {
        const auto isIt = [&](const NodePtr& node) { return *node == further; };
        if (!canBeNode(further))
            throw ZoError("robot address \"" + printable(further.host) + "\" with port " +
                          std::to_string(further.port) + " is none");
        if (options.socketPath.empty() && nodes.size() < ZoAddress::fMostAddresses &&
            std::none_of(nodes.begin(), nodes.end(), isIt))
            nodes.push_back(std::make_shared<const ZoAddress>(further));
    }
    return nodes;
}

/// All that decides how the robot is reached.
auto wayOf(const ZoBrokerOptions& options)
{
    // As bindings, so that none can be forgotten that is new.
    const auto& [user, password, tls, tlsVerify, tlsCaFile, tlsCertFile, tlsKeyFile, socketPath,
                 prefix, furtherAddresses, sentinel, replica, follow, notices, connectTimeout,
                 exchangeTimeout, callTimeout, keyListTimeout, timeoutPerKey, pingInterval,
                 reconnectWait, reconnectWaitMax, later] = options;
    (void)follow;
    (void)notices;
    return std::tie(user, password, tls, tlsVerify, tlsCaFile, tlsCertFile, tlsKeyFile, socketPath,
                    prefix, furtherAddresses, sentinel, replica, connectTimeout, exchangeTimeout,
                    callTimeout, keyListTimeout, timeoutPerKey, pingInterval, reconnectWait,
                    reconnectWaitMax, later);
}

} // namespace

LinkSettings::LinkSettings(const std::string& host, int port, const ZoBrokerOptions& wanted,
                           const std::string& name)
    : peer(host, port, wanted.password),
      options(wanted),
      clientName(clientNameOf(name)),
      nodes(nodesOf({host, port}, wanted))
{
    ZoBrokerOptions::checkPrefix(options.prefix);
    confine(options);
}

LinkSettings::LinkSettings(const LinkSettings& last, const ZoBrokerOptions& wanted)
    : LinkSettings(last.peer.host(), last.peer.port(), wanted, last.clientName)
{
    options.prefix = last.options.prefix;
    options.furtherAddresses = last.options.furtherAddresses;
    options.sentinel = last.options.sentinel;
    options.replica = last.options.replica;
    nodes = last.nodes;
}

std::optional<int> LinkSettings::slot() const
{
    if (!hasHashTag(options.prefix) || !options.sentinel.empty() || !options.socketPath.empty())
        return {};
    return hashSlotOf(options.prefix);
}

bool LinkSettings::wouldScatter() const
{
    return !options.prefix.empty() && !hasHashTag(options.prefix) && options.sentinel.empty();
}

ZoError LinkSettings::refusal(const std::string& command, const std::string& text) const
{
    const std::string hint = isMoving(text) ? " (its keys are just moving to another node)" : "";
    return peer.error("refuses " + command + ": " + peer.quote(text) + hint);
}

LinkSettings::~LinkSettings()
{
    wipe(options.password);
}

std::shared_ptr<const LinkSettings> makeLinkSettings(const std::string& host, int port,
                                                     const ZoBrokerOptions& options,
                                                     const std::string& name)
{
    return std::make_shared<const LinkSettings>(host, port, options, name);
}

const std::string& LinkSettings::hostToLookUp(const ZoAddress& node) const
{
    static const std::string ownMachine = "127.0.0.1";
    return options.socketPath.empty() ? node.host : ownMachine;
}

bool isSameWay(const LinkSettings& one, const LinkSettings& other)
{
    return one.peer.host() == other.peer.host() && one.peer.port() == other.peer.port() &&
           wayOf(one.options) == wayOf(other.options);
}

} // namespace zo
