// SPDX-License-Identifier: MIT
#include "windows/file_menu.h"

#include "connection/connection_state.h"
#include "windows/menu_command.h"
#include "windows/panel_commands.h"
#include "windows/workspace_menu.h"

#include <QAction>
#include <QMainWindow>
#include <QMenuBar>

FileMenu::FileMenu(PanelCommands& commands, QMainWindow* window) : QObject(window)
{
    QMenu* menu = window->menuBar()->addMenu(tr("&File"));
    addCommand(*menu, tr("&New connection..."), tr("Ctrl+N"), this,
               &FileMenu::newConnectionRequested);
    const auto* workspaces = new WorkspaceMenu(menu);
    connect(workspaces, &WorkspaceMenu::saveRequested, this, &FileMenu::saveWorkspaceRequested);
    connect(workspaces, &WorkspaceMenu::openRequested, this, &FileMenu::openWorkspaceRequested);
    menu->addSeparator();
    commands.addSaving(*menu);
    addCommand(*menu, tr("R&ecord..."), tr("Ctrl+R"), this, &FileMenu::recordRequested);
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
    addCommand(menu, tr("&Close panel"), tr("Ctrl+W"), this, &FileMenu::closePanelRequested);
    addCommand(menu, tr("Close &window"), tr("Ctrl+Shift+W"), this,
               &FileMenu::closeWindowRequested);
    addCommand(menu, tr("&Quit"), tr("Ctrl+Q"), this, &FileMenu::quitRequested);
}

void FileMenu::showState(const ConnectionState& state)
{
    fDisconnectAction->setEnabled(!state.closed);
    fReconnectAction->setEnabled(!state.connected);
}
