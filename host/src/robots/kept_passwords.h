// SPDX-License-Identifier: MIT
#pragma once

#include "robots/keyring.h"

#include <QObject>

/// What the user wants done with the passwords of robots: which of them the desktop's keyring
/// keeps. It is asked for nothing that it has never had to do with: it may be locked, and would ask
/// the user then.
class KeptPasswords : public QObject
{
    Q_OBJECT

public:
    explicit KeptPasswords(std::unique_ptr<Keyring> keyring, QObject* parent = nullptr);

    /// Whether the user wanted it for just this way to the robot, of those that are remembered or
    /// saved: what was kept for an encrypted one must not be sent in clear, nor to whom another
    /// authority vouches for.
    static bool isWantedFor(const ConnectionSettings& robot);

    /// Says the password of `robot`, as Keyring::read does.
    void read(const ConnectionSettings& robot, const Keyring::Found& found);
    /// Keeps or forgets the password of `settings`, which the robot has taken, as they say. To be
    /// called before they are remembered.
    void keep(const ConnectionSettings& settings);
    /// The user has done with `robot`.
    void forget(const ConnectionSettings& robot);

signals:
    /// One cannot be kept.
    void failed(const QString& problem);

private:
    const std::unique_ptr<Keyring> fKeyring;
};
