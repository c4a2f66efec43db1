// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_settings.h"

#include <QList>

/// The robots that the user reached lately, latest first, kept in the user's settings. A
/// password is never kept.
namespace recent_connections {

constexpr int mostKept = 10;

/// Entries of the settings file that make no sense are left out.
QList<ConnectionSettings> load();
/// Puts `settings` in front; an older entry of the same address goes.
void remember(const ConnectionSettings& settings);

} // namespace recent_connections
