// SPDX-License-Identifier: MIT
#include "link/link_settings.h"

#include "link/secret_text.h"

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

/// All that decides how the robot is reached.
auto wayOf(const ZoBrokerOptions& options)
{
    // As bindings, so that none can be forgotten that is new.
    const auto& [user, password, tls, tlsVerify, tlsCaFile, tlsCertFile, tlsKeyFile, follow,
                 notices, connectTimeout, exchangeTimeout, callTimeout, keyListTimeout,
                 timeoutPerKey, pingInterval, reconnectWait, reconnectWaitMax] = options;
    (void)follow;
    (void)notices;
    return std::tie(user, password, tls, tlsVerify, tlsCaFile, tlsCertFile, tlsKeyFile,
                    connectTimeout, exchangeTimeout, callTimeout, keyListTimeout, timeoutPerKey,
                    pingInterval, reconnectWait, reconnectWaitMax);
}

} // namespace

LinkSettings::LinkSettings(const std::string& host, int port, const ZoBrokerOptions& wanted,
                           const std::string& name)
    : peer(host, port, wanted.password), options(wanted), clientName(clientNameOf(name))
{
    confine(options);
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

bool isSameWay(const LinkSettings& one, const LinkSettings& other)
{
    return one.peer.host() == other.peer.host() && one.peer.port() == other.peer.port() &&
           wayOf(one.options) == wayOf(other.options);
}

} // namespace zo
