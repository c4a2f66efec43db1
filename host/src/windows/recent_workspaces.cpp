// SPDX-License-Identifier: MIT
#include "windows/recent_workspaces.h"

#include <QFileInfo>
#include <QSettings>

namespace {

constexpr char listName[] = "recentWorkspaces";

} // namespace

QStringList recentWorkspaces()
{
    QStringList files;
    for (const QString& file :
         QSettings().value(listName).toStringList().mid(0, mostRecentWorkspaces))
        if (QFileInfo(file).isAbsolute() && QFileInfo(file).isFile())
            files += file;
    return files;
}

void rememberWorkspace(const QString& file)
{
    QSettings store;
    QStringList files = store.value(listName).toStringList(); // one on a stick may come back
    files.removeAll(file);
    files.prepend(file);
    store.setValue(listName, QStringList(files.mid(0, mostRecentWorkspaces)));
}
