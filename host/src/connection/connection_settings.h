// SPDX-License-Identifier: MIT
#pragma once

#include <kit/password_file.h>

#include <zo/address.h>
#include <zo/broker_options.h>

#include <QString>

#include <memory>
#include <string>
#include <vector>

class SshRelay;

/// `address` in the one form in which addresses are shown and compared: a host's name in small
/// letters, an IPv6 address as short as it can be.
ZoAddress inOneForm(ZoAddress address);

/// How the user wants to reach one robot.
struct ConnectionSettings
{
    ConnectionSettings() = default;
    /// What the command line says; paths and the user's name are in the locale's encoding.
    ConnectionSettings(const ZoAddress& robot, const ZoBrokerOptions& options);

    ZoAddress address;    ///< in one form
    QString prefix;       ///< of the robot's keys there; empty: it has the server to itself
    QString user;         ///< empty: the server's default user
    kit::Secret password; ///< of any bytes, UTF-8 when typed; empty: none; never in the settings
    bool keepsPassword = false; ///< in the desktop's keyring
    bool tls = false;
    QString caFile;   ///< PEM file of authorities for TLS; empty: those of the system
    QString certFile; ///< PEM certificate to show, with keyFile; empty: none
    QString keyFile;
    QString jumpHost; ///< USER@HOST, by way of which ssh leads there; empty: directly
    std::shared_ptr<SshRelay> relay; ///< by which it is reached then; null before openWay
    int timeout = 0;       ///< ms, as of the option --timeout; 0: what suits a local network
    bool follow = true;    ///< panels wait for no answer: they take the newest that is there
    ZoBrokerOptions other; ///< what has no field here

    /// Of the robot and its further nodes, in one form; one at least.
    void setAddresses(std::vector<ZoAddress> all);

    QString addressText() const { return QString::fromStdString(address.toText()); }
    /// With those of its further nodes, and commas between.
    QString addressesText() const;
    /// Which robot it is: its prefix, if it has one, its name among sentinels, and the address.
    QString robotText() const;
    /// The same with all addresses, whether a replica is read there, and by way of whom.
    QString wayText() const;
    ZoBrokerOptions brokerOptions() const;
    /// Makes what brokerOptions needs to lead there, and lets it ask the user. Throws what SshRelay
    /// does.
    void openWay();
};

/// What ssh said last on the way there; empty: nothing.
QString wordsOfSsh(const ConnectionSettings& settings);
/// The same, as an end of a message.
QString endWithWordsOfSsh(const ConnectionSettings& settings);

/// Throws ZoError that names the file which cannot be read, or would hold up whoever reads it, as a
/// pipe does.
void refuseUnreadableFiles(const ConnectionSettings& settings);

/// Throws ZoError for nodes, a sentinel's name and a host in between that no robot can be found by.
void checkNodes(const ConnectionSettings& settings);

/// Whether both lead to the same robot.
bool isSameAddress(const ConnectionSettings& one, const ConnectionSettings& other);
/// The same, and as the same user.
bool isSameRobot(const ConnectionSettings& one, const ConnectionSettings& other);
