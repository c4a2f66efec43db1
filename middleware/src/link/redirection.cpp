// SPDX-License-Identifier: MIT
#include "link/redirection.h"

#include "link/host_name.h"

#include <charconv>
#include <utility>

namespace zo {

namespace {

Redirection::Kind kindOf(std::string_view word)
{
    using Kind = Redirection::Kind;
    static constexpr std::pair<std::string_view, Kind> kinds[] = {
        {"MOVED", Kind::Moved},         {"ASK", Kind::Ask},
        {"TRYAGAIN", Kind::TryAgain},   {"CLUSTERDOWN", Kind::ClusterDown},
        {"CROSSSLOT", Kind::CrossSlot}, {"READONLY", Kind::ReadOnly}};
    for (const auto& [name, kind] : kinds) {
        if (word == name)
            return kind;
    }
    return Kind::None;
}

/// The node in `text`, "HOST:PORT" with an IPv6 address as it is.
std::optional<ZoAddress> readNode(std::string_view text, const std::string& host)
{
    const std::size_t colon = text.rfind(':');
    if (colon == text.npos)
        return {};
    ZoAddress node{std::string(text.substr(0, colon)), 0};
    if (node.host.empty())
        node.host = host;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data() + colon + 1, end, node.port);
    if (read.ec != std::errc() || read.ptr != end || !canBeNode(node))
        return {};
    return node;
}

} // namespace

Redirection readRedirection(std::string_view error, const std::string& host)
{
    const std::size_t space = error.find(' ');
    const Redirection::Kind kind = kindOf(error.substr(0, space));
    const bool tellsNode = kind == Redirection::Kind::Moved || kind == Redirection::Kind::Ask;
    return {kind, tellsNode ? readNode(error.substr(error.rfind(' ') + 1), host) : std::nullopt};
}

bool isMoving(std::string_view error)
{
    const Redirection::Kind kind = kindOf(error.substr(0, error.find(' ')));
    return kind == Redirection::Kind::Ask || kind == Redirection::Kind::TryAgain;
}

} // namespace zo
