// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

class PanelCommands;
class QAction;
class QMainWindow;
class QMenu;
struct ConnectionState;

/// The menu "File" of a window.
class FileMenu : public QObject
{
    Q_OBJECT

public:
    /// `commands` saves what the panel in front shows.
    FileMenu(PanelCommands& commands, QMainWindow* window);

    /// Offers what can be done about the connection.
    void showState(const ConnectionState& state);

signals:
    void newConnectionRequested();
    void saveWorkspaceRequested();
    void openWorkspaceRequested(const QString& file); ///< empty: the user is to choose one
    void recordRequested();
    void disconnectRequested();
    void reconnectRequested();
    void lossLimitRequested();
    void closePanelRequested();
    void closeWindowRequested();
    void quitRequested();

private:
    void addConnecting(QMenu& menu);
    void addClosing(QMenu& menu);

    QAction* fDisconnectAction = nullptr;
    QAction* fReconnectAction = nullptr;
};
