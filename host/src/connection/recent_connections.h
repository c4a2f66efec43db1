// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_settings.h"

#include <QList>

/// The robots that the user reached lately, latest first, kept in the user's settings: at most so
/// many, and never a password.
constexpr int mostRecentConnections = 10;

/// Entries of the settings file that make no sense here are left out, and left there.
QList<ConnectionSettings> recentConnections();
/// Puts `settings` in front; an older entry of the same robot and user goes.
void rememberConnection(const ConnectionSettings& settings);
