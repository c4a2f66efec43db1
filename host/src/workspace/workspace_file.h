// SPDX-License-Identifier: MIT
#pragma once

#include "workspace/workspace.h"

/// Where a session of the desktop's keeps what was open; `id` may have any characters.
QString sessionFile(const QString& id);
bool isSessionFile(const QString& file);

/// Reads a workspace. Throws ZoError, with the file's name and what to do.
Workspace readWorkspace(const QString& file);

/// Writes it; the file is the old one or the new one, whatever happens. What another version wrote
/// into the old one stays. Returns what went wrong, empty for nothing.
QString writeWorkspace(const Workspace& workspace, const QString& file);
