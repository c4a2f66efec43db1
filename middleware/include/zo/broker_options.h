// SPDX-License-Identifier: MIT
#pragma once

#include <zo/address.h>
#include <zo/export.h>

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

struct ZoLaterOptions; // only the library knows what is in it

/// How a broker reaches its robot. The defaults suit a robot on the same network.
struct ZoBrokerOptions
{
    std::string user;     ///< empty: the server's default user
    std::string password; ///< empty: none; appears in no message

    bool tls = false;
    bool tlsVerify = true;   ///< check the server's certificate and name
    std::string tlsCaFile;   ///< PEM file of authorities; empty: those of the system
    std::string tlsCertFile; ///< PEM client certificate, with tlsKeyFile; empty: none
    std::string tlsKeyFile;

    /// Unix socket of this machine behind which the robot is, as of a tunnel; host and port, and
    /// the name in the certificate, are the robot's all the same. Empty: host is looked up and
    /// reached.
    std::string socketPath;

    /// What each key begins with on the robot's server, and nowhere else: keys are read and written
    /// behind it, and named without it. Robots that share a server have one each. It is taken as it
    /// stands: "robot7/" is robot7's alone, "robot7" is that of robot70, too. Empty: none, and
    /// every key of the server is there.
    std::string prefix;
    static constexpr std::size_t fLongestPrefix = 256; ///< bytes

    /// Throws ZoError, naming it and what is wrong, when `prefix` is too long, no UTF-8, or has
    /// blanks or control characters: access lists could not name it, and people not read it. No
    /// other character has a meaning of its own.
    ZO_EXPORT static void checkPrefix(const std::string& prefix);

    /// Further nodes of the robot's cluster, or sentinels of its server, that are tried beside the
    /// broker's address: those that are dead are passed over. 16 in all are used. Not with
    /// socketPath.
    std::vector<ZoAddress> furtherAddresses;
    /// The name of the robot's server among the sentinels whose addresses are given: they are asked
    /// which one it is, again after each loss, without a login. Empty: the addresses are the
    /// server's.
    std::string sentinel;
    /// Whether a cluster's replicas are read where there are any. Their values may be late, and go
    /// back when the link goes from one to another; nothing can be written.
    bool replica = false;

    /// Whether a list that is asked for again and again is followed: it is kept up to date as its
    /// calls need it, and a call takes the newest answer without waiting for the robot. Without,
    /// each call reads what the robot has at that moment.
    bool follow = false;
    /// Whether a robot that can is asked to tell what was written, so that only that is read again.
    /// Without, everything that is followed is.
    bool notices = true;

    std::chrono::milliseconds connectTimeout{1000}; ///< look-up to first answer, each attempt
    /// How long a call waits, beside a round trip, for a silent robot. It does not end the link:
    /// that is cut after 2 s (or this, if longer) and four round trips without a byte.
    std::chrono::milliseconds exchangeTimeout{250};
    /// How long a call waits in all, however slowly it is answered (or exchangeTimeout, if longer).
    std::chrono::milliseconds callTimeout{2000};
    /// How long a list of keys waits for one that is new. In all it takes 15 times as long at most.
    std::chrono::milliseconds keyListTimeout{2000};
    std::chrono::microseconds timeoutPerKey{20};      ///< added to the last two for each key
    std::chrono::milliseconds pingInterval{1000};     ///< how often an idle link is tried
    std::chrono::milliseconds reconnectWait{100};     ///< bound of the first random wait ...
    std::chrono::milliseconds reconnectWaitMax{3000}; ///< ... which doubles up to this one

    /// Options that come after release 1.0, so that no program has to be built anew for them:
    /// functions of the library will read and set them. Empty: they have their defaults.
    std::shared_ptr<const ZoLaterOptions> later;
};
