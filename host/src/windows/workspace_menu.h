// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

class QMenu;

/// The commands of a window's menu "File" that save and open workspaces.
class WorkspaceMenu : public QObject
{
    Q_OBJECT

public:
    explicit WorkspaceMenu(QMenu* file);

signals:
    void saveRequested();
    void openRequested(const QString& file); ///< empty: the user is to choose one

private slots:
    void xShowRecent();

private:
    QMenu* fRecent;
};
