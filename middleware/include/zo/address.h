// SPDX-License-Identifier: MIT
#pragma once

#include <zo/export.h>

#include <string>
#include <vector>

/// Where a robot's memory listens.
struct ZO_EXPORT ZoAddress
{
    static constexpr char fDefaultHost[] = "127.0.0.1";
    static constexpr int fDefaultPort = 6379;
    static constexpr int fHighestPort = 65535;

    std::string host = fDefaultHost; ///< name or IP address; an IPv6 address without brackets
    int port = fDefaultPort;         ///< 1 to fHighestPort

    /// Reads HOST or HOST:PORT, with an IPv6 address in brackets: "arm-7", "10.0.0.7:6380",
    /// "[fe80::1%eth0]:6379". Throws ZoError that names the text and what is wrong with it.
    static ZoAddress fromText(const std::string& text);

    /// So many addresses may be given for one robot.
    static constexpr int fMostAddresses = 16;

    /// Reads one or several of these with commas between, as of the nodes of a cluster:
    /// "10.0.0.7:7001,10.0.0.8:7001". Each once. Throws ZoError for what is none, and for too many.
    static std::vector<ZoAddress> listFromText(const std::string& text);

    /// HOST:PORT, as fromText reads it.
    std::string toText() const;

    bool operator==(const ZoAddress& other) const noexcept
    {
        return host == other.host && port == other.port;
    }
};
