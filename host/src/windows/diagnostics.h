// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_settings.h"

#include <QString>
#include <QStringList>

class PluginLoader;

/// What somebody who is to help with a problem wants to know, one thing a line: versions, systems
/// and screens, the robot and its links, plug-ins, settings. Without passwords and what else is
/// nobody's business.
QString diagnostics(const PluginLoader& plugins, const ConnectionSettings& robot,
                    const QStringList& connection, const QStringList& panels);
