// SPDX-License-Identifier: MIT
#pragma once

#include "support/password_file.h"
#include "support/redis_server.h"

#include <QStringList>

/// A server over TLS, and a user who signs in there by a password file: for programs.
struct TlsLogin
{
    static RedisServer::Options options()
    {
        RedisServer::Options options;
        options.tls = true;
        options.users = {"alice on >open-sesame ~* +@all"};
        options.defaultPassword = "another";
        return options;
    }

    QStringList encryption() const
    {
        return {"--tls", "--ca", QString::fromStdString(server.caFile())};
    }
    /// All that a program is told, but the address.
    QStringList words() const
    {
        return encryption() +
               QStringList{"--user", "alice", "--password-file", password.fileName()};
    }

    RedisServer server{options()};
    PasswordFile password{"open-sesame"};
};
