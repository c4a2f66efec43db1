// SPDX-License-Identifier: MIT
#include <zo/address.h>
#include <zo/error.h>

#include "link/host_name.h"

#include <algorithm>
#include <arpa/inet.h>
#include <charconv>

namespace {

[[noreturn]] void throwWrong(const std::string& text, const std::string& cause)
{
    throw ZoError("robot address '" + text + "': " + cause);
}

bool isIpv6(const std::string& host)
{
    in6_addr ignored{};
    const std::string withoutZone = host.substr(0, host.find('%'));
    return ::inet_pton(AF_INET6, withoutZone.c_str(), &ignored) == 1;
}

/// The host in brackets that `text` begins with; `rest` becomes where it goes on behind them.
std::string hostInBrackets(const std::string& text, std::size_t& rest)
{
    const std::size_t close = text.find(']');
    if (close == std::string::npos)
        throwWrong(text, "']' is missing");
    std::string host = text.substr(1, close - 1);
    if (!zo::canBeHost(host) || !isIpv6(host))
        throwWrong(text, "there is no IPv6 address in the brackets");
    rest = close + 1;
    return host;
}

std::string plainHost(const std::string& text, std::size_t& rest)
{
    rest = std::min(text.find(':'), text.size());
    if (text.find(':', rest + 1) != std::string::npos)
        throwWrong(text, "write an IPv6 address in brackets, as in [::1]:6379");
    std::string host = text.substr(0, rest);
    if (host.empty())
        throwWrong(text, "there is no host");
    if (!zo::canBeHost(host))
        throwWrong(text, "this is no host name or address");
    return host;
}

int portOf(const std::string& text, std::size_t start)
{
    int port = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data() + start, end, port);
    if (result.ec != std::errc() || result.ptr != end || port < 1 || port > ZoAddress::fHighestPort)
        throwWrong(text, "the port must be a number from 1 to " +
                             std::to_string(ZoAddress::fHighestPort));
    return port;
}

} // namespace

ZoAddress ZoAddress::fromText(const std::string& text)
{
    ZoAddress address;
    std::size_t rest = 0;
    const bool bracketed = !text.empty() && text.front() == '[';
    address.host = bracketed ? hostInBrackets(text, rest) : plainHost(text, rest);
    if (rest == text.size())
        return address;
    if (text[rest] != ':')
        throwWrong(text, "only a port may stand behind the brackets, as in [::1]:6379");
    address.port = portOf(text, rest + 1);
    return address;
}

std::vector<ZoAddress> ZoAddress::listFromText(const std::string& text)
{
    std::vector<ZoAddress> all;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        if (end == begin && !text.empty())
            throwWrong(text, "there is nothing before or behind a comma");
        const ZoAddress address = fromText(text.substr(begin, end - begin));
        if (std::find(all.begin(), all.end(), address) == all.end())
            all.push_back(address);
        begin = end + 1;
    }
    if (all.size() > fMostAddresses)
        throwWrong(text, "these are more than " + std::to_string(fMostAddresses) + " addresses");
    return all;
}

std::string ZoAddress::toText() const
{
    const bool bracketed = host.find(':') != std::string::npos;
    return (bracketed ? "[" + host + "]" : host) + ":" + std::to_string(port);
}
