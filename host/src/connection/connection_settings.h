// SPDX-License-Identifier: MIT
#pragma once

#include <zo/address.h>
#include <zo/broker_options.h>

#include <QString>

#include <string>

/// How the user wants to reach one robot.
struct ConnectionSettings
{
    ConnectionSettings() = default;
    /// What the command line says; paths and the user's name are in the locale's encoding.
    ConnectionSettings(const ZoAddress& robot, const ZoBrokerOptions& options);

    ZoAddress address;
    QString user;         ///< empty: the server's default user
    std::string password; ///< of any bytes, UTF-8 when typed; empty: none; never stored
    bool tls = false;
    QString caFile;        ///< PEM file of authorities for TLS; empty: those of the system
    bool follow = true;    ///< panels wait for no answer: they take the newest that is there
    ZoBrokerOptions other; ///< what only the command line says: certificate to show, time-outs

    QString addressText() const { return QString::fromStdString(address.toText()); }
    ZoBrokerOptions brokerOptions() const;
};
