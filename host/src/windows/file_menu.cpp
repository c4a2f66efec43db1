// SPDX-License-Identifier: MIT
#include "windows/file_menu.h"

#include "connection/connection_state.h"
#include "windows/panel_commands.h"
#include "windows/workspace_menu.h"

#include <QAction>
#include <QMainWindow>
#include <QMenuBar>

FileMenu::FileMenu(PanelCommands& commands, QMainWindow* window) : QObject(window)
{
    QMenu* menu = window->menuBar()->addMenu(tr("&File"));
    menu->addAction(tr("&New connection..."), this, &FileMenu::newConnectionRequested,
                    QKeySequence(tr("Ctrl+N")));
    const auto* workspaces = new WorkspaceMenu(menu);
    connect(workspaces, &WorkspaceMenu::saveRequested, this, &FileMenu::saveWorkspaceRequested);
    connect(workspaces, &WorkspaceMenu::openRequested, this, &FileMenu::openWorkspaceRequested);
    menu->addSeparator();
    commands.addSaving(*menu);
    menu->addAction(tr("R&ecord..."), this, &FileMenu::recordRequested, QKeySequence(tr("Ctrl+R")));
    menu->addSeparator();
    addConnecting(*menu);
    menu->addSeparator();
    addClosing(*menu);
}

void FileMenu::addConnecting(QMenu& menu)
{
    fDisconnectAction = menu.addAction(tr("&Disconnect"), this, &FileMenu::disconnectRequested);
    fReconnectAction = menu.addAction(tr("&Reconnect"), this, &FileMenu::reconnectRequested);
    menu.addAction(tr("Wa&it for the robot..."), this, &FileMenu::lossLimitRequested);
}

void FileMenu::addClosing(QMenu& menu)
{
    menu.addAction(tr("&Close panel"), this, &FileMenu::closePanelRequested,
                   QKeySequence(tr("Ctrl+W")));
    menu.addAction(tr("Close &window"), this, &FileMenu::closeWindowRequested,
                   QKeySequence(tr("Ctrl+Shift+W")));
    menu.addAction(tr("&Quit"), this, &FileMenu::quitRequested, QKeySequence(tr("Ctrl+Q")));
}

void FileMenu::showState(const ConnectionState& state)
{
    fDisconnectAction->setEnabled(!state.closed);
    fReconnectAction->setEnabled(!state.connected);
}
