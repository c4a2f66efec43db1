// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_settings.h"
#include "windows/window_content.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

// A workspace: the windows that a user wants to have open together, as a text of JSON. Passwords
// are not in it. It may come from anybody: all of it is checked. Other versions write it, too:
// members that are not known here change nothing, and stay in the file.

/// The window of one robot.
struct WorkspaceWindow
{
    ConnectionSettings robot;
    WindowContent content;
};

struct Workspace
{
    QList<WorkspaceWindow> windows;
    QStringList problems; ///< parts that cannot be used; for the user
};

constexpr int workspaceVersion = 1;
constexpr int largestWorkspace = 4 << 20; ///< bytes
constexpr int mostWorkspaceWindows = 50;
constexpr int mostWorkspacePanels = 100; ///< of a window

/// Understands `text`, in which relative paths are taken from `folder`. Throws ZoError when it is
/// no workspace.
Workspace workspaceFrom(const QByteArray& text, const QString& folder);

/// The text for a file in `folder`; paths below that are relative. What only another version knows,
/// of these windows and panels and besides, comes from `before`, the text that is to be replaced.
/// Arrangements, looks and titles that are too large are left out. Throws ZoError when that is of a
/// newer version and another kind, and when workspaceFrom would leave out more.
QByteArray workspaceText(const Workspace& workspace, const QString& folder,
                         const QByteArray& before = {});

/// Those of its windows and panels that a file in `folder` can hold: what workspaceText takes.
Workspace fitting(const Workspace& workspace, const QString& folder);
