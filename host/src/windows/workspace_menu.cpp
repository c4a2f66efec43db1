// SPDX-License-Identifier: MIT
#include "windows/workspace_menu.h"

#include "connection/plain_tool_tip.h"
#include "windows/menu_command.h"
#include "windows/recent_workspaces.h"

#include <QFileInfo>
#include <QMenu>

WorkspaceMenu::WorkspaceMenu(QMenu* file) : QObject(file)
{
    addCommand(*file, tr("&Open workspace..."), tr("Ctrl+O"), this,
               [this] { emit openRequested({}); });
    fRecent = file->addMenu(tr("Recent wor&kspaces"));
    fRecent->setToolTipsVisible(true);
    addCommand(*file, tr("Sa&ve workspace..."), tr("Ctrl+Alt+S"), this,
               &WorkspaceMenu::saveRequested);
    connect(file, &QMenu::aboutToShow, this, &WorkspaceMenu::xShowRecent);
    xShowRecent();
}

/// Those of other windows, too.
void WorkspaceMenu::xShowRecent()
{
    fRecent->clear();
    for (const QString& file : recentWorkspaces()) {
        const QString name = QFileInfo(file).completeBaseName();
        QAction* action = fRecent->addAction(QString(name).replace('&', "&&"),
                                             [this, file] { emit openRequested(file); });
        action->setToolTip(plainToolTip(file));
    }
    fRecent->setEnabled(!fRecent->isEmpty());
}
