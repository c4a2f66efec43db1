// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>

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
};
