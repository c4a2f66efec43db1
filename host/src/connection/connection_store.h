// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_settings.h"

#include <QVariantMap>

class QSettings;

// How to reach a robot, in a file: everything but the password. What the file says is checked as
// what a user types; keys that only another version knows are left alone.

/// The values by their keys.
QVariantMap connectionValues(const ConnectionSettings& settings);

/// From such values; those that are not there are the defaults. Throws ZoError when there is no
/// address, or none by way of whom, and when its nodes are no robot's.
ConnectionSettings connectionFrom(const QVariantMap& values);

/// The keys of those that are paths of files, relative ones of which do not count.
QStringList connectionFileKeys();

/// Into the group or array in which `store` stands.
void writeConnection(QSettings& store, const ConnectionSettings& settings);

/// From there. Throws what connectionFrom does.
ConnectionSettings readConnection(const QSettings& store);
