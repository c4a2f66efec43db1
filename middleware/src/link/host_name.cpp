// SPDX-License-Identifier: MIT
#include "link/host_name.h"

#include <boost/asio/ip/address.hpp>

#include <algorithm>
#include <string_view>

namespace zo {

namespace {

constexpr std::size_t longestHost = 255;

bool canBeInHost(char byte)
{
    constexpr std::string_view around = "[]/@,\x7f";
    return static_cast<unsigned char>(byte) > ' ' && around.find(byte) == std::string_view::npos;
}

} // namespace

bool canBeHost(const std::string& host)
{
    return !host.empty() && std::all_of(host.begin(), host.end(), canBeInHost);
}

bool canBeNode(const ZoAddress& node)
{
    const auto isAscii = [](char byte) { return static_cast<unsigned char>(byte) < 0x80; };
    return canBeHost(node.host) && std::all_of(node.host.begin(), node.host.end(), isAscii) &&
           node.host != "?" && node.host.size() <= longestHost && node.port >= 1 &&
           node.port <= ZoAddress::fHighestPort;
}

bool isNumericHost(const std::string& host)
{
    boost::system::error_code problem;
    boost::asio::ip::make_address(host, problem);
    return !problem;
}

} // namespace zo
