// SPDX-License-Identifier: MIT
#include "robots/kept_passwords.h"

#include "connection/recent_connections.h"
#include "robots/saved_robots.h"

#include <algorithm>
#include <utility>

KeptPasswords::KeptPasswords(std::unique_ptr<Keyring> keyring, QObject* parent)
    : QObject(parent), fKeyring(std::move(keyring))
{
}

bool KeptPasswords::isWantedFor(const ConnectionSettings& robot)
{
    QList<ConnectionSettings> known = recentConnections();
    for (const SavedRobot& saved : savedRobots())
        known += saved.settings;
    return std::any_of(known.begin(), known.end(), [&](const ConnectionSettings& own) {
        return own.keepsPassword && isSameRobot(own, robot) && own.tls == robot.tls &&
               own.caFile == robot.caFile;
    });
}

void KeptPasswords::read(const ConnectionSettings& robot, const Keyring::Found& found)
{
    fKeyring->read(keyringName(robot), found);
}

void KeptPasswords::keep(const ConnectionSettings& settings)
{
    const QString name = keyringName(settings);
    if (settings.keepsPassword && !settings.password.empty())
        fKeyring->write(name, settings.password, [this](const QString& cause) {
            emit failed(tr("The password is not kept: %1").arg(cause));
        });
    else if (!settings.keepsPassword && isWantedFor(settings))
        fKeyring->forget(name);
}

void KeptPasswords::forget(const ConnectionSettings& robot)
{
    if (robot.keepsPassword)
        fKeyring->forget(keyringName(robot));
}
