// SPDX-License-Identifier: MIT
#pragma once

#include "support/redis_server.h"
#include "support/robot.h"

#include <string>
#include <utility>

/// A server with a user who must sign in, for tests of what such a user may do.

/// `rights` as in the server's access list: "~Arm/* +@all".
inline RedisServer::Options withAlice(const std::string& rights = "~* +@all")
{
    RedisServer::Options options;
    options.users = {"alice on >secret " + rights};
    return options;
}

inline ZoBrokerOptions asAlice(ZoBrokerOptions options = patientOptions())
{
    options.user = "alice";
    options.password = "secret";
    return options;
}
