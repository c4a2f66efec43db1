// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_settings.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

// The robots that the user has saved under a name, in the user's settings, without passwords. Names
// are unique. What makes no sense in the file is left out, and left there: another version may know
// what to do with it.

struct SavedRobot
{
    QString name; ///< one line, not empty
    ConnectionSettings settings;
};

constexpr int mostSavedRobots = 1000;
constexpr int longestRobotName = 100;

/// In the user's order.
QList<SavedRobot> savedRobots();

/// In place of the one with that name; a new one comes last. An empty name is that of the address.
/// Returns the name that it has got.
QString saveRobot(const SavedRobot& robot);

/// Nothing happens when `name` is none, or `newName` another's. Whether it has the new name.
bool renameRobot(const QString& name, const QString& newName);

void deleteRobot(const QString& name);

/// Those that `names` does not hold come last.
void orderRobots(const QStringList& names);

/// The name of the one with the same address and user; empty: there is none. Of several, it is the
/// one called `chosen`, or else one that is reached in the very same way.
QString savedNameOf(const ConnectionSettings& settings, const QString& chosen = {});

/// The one that was used last, if it is saved.
std::optional<SavedRobot> lastRobot();
/// `settings` are those of the last one, whether it is saved or not.
void rememberLastRobot(const ConnectionSettings& settings);
