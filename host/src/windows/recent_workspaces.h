// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// The workspaces that the user opened or saved lately, latest first, in the user's settings.
constexpr int mostRecentWorkspaces = 10;

/// Those of which the files are there.
QStringList recentWorkspaces();
/// Puts `file`, an absolute path, in front.
void rememberWorkspace(const QString& file);
