// SPDX-License-Identifier: MIT
#pragma once

#include "support/desktop_bench.h"
#include "support/host.h"
#include "support/modal_driver.h"
#include "windows/panel_dock.h"
#include "windows/panel_docks.h"
#include "workspace/workspace_file.h"

#include <QFileDialog>
#include <QMenuBar>
#include <QMessageBox>
#include <QTemporaryDir>

/// What tests of workspaces share: a desktop, a file, and words for what its user does.
class WorkspaceBench : protected DesktopBench
{
protected:
    void setUp()
    {
        DesktopBench::setUp();
        fFolder.reset(new QTemporaryDir);
    }

    QString file() const { return fFolder->filePath("My robots.tarvek"); }

    QAction* action(const QString& text) const
    {
        for (QAction* action : window()->menuBar()->findChildren<QAction*>())
            if (action->text().remove('&').startsWith(text))
                return action;
        return nullptr;
    }

    static ConnectionSettings settingsOf(const RedisServer& robot)
    {
        ConnectionSettings settings;
        settings.address.host = "127.0.0.1";
        settings.address.port = robot.port();
        return settings;
    }
    static WorkspaceWindow windowOf(const ConnectionSettings& robot,
                                    const QStringList& plugins = {"Probe"})
    {
        WorkspaceWindow window;
        window.robot = robot;
        for (const QString& plugin : plugins)
            window.content.panels += PanelContent{plugin, plugin + " 1", {}};
        return window;
    }
    void write(const QList<WorkspaceWindow>& windows) const
    {
        QCOMPARE(writeWorkspace({windows, {}}, file()), QString());
    }
    /// The names of the panels of the first window there.
    static QStringList panelsIn(const QString& file)
    {
        QStringList names;
        const WindowContent content = readWorkspace(file).windows.first().content;
        for (const PanelContent& panel : content.panels)
            names += panel.dock;
        return names;
    }

    void openFile()
    {
        fLine.connectAtOnce = false;
        fLine.workspace = file();
        begin();
    }
    /// The same, of a file that cannot be opened as a whole.
    void openWithMessage()
    {
        openFile();
        TRY_VERIFY(message());
    }

    void saveAs(const QString& file) const
    {
        ModalDriver user;
        user.then<QFileDialog>([file](QFileDialog& dialog) { chooseFile(dialog, file); });
        action("Save workspace")->trigger();
    }
    /// Takes note of the message, if there is one, and saves what is open; returns the file.
    QString savedAgain() const
    {
        QString again = fFolder->filePath("Again.tarvek");
        dismissMessage();
        saveAs(again);
        return again;
    }

    QMessageBox* message() const { return shown<QMessageBox>("workspaceProblems"); }
    void dismissMessage() const
    {
        if (message())
            QTest::keyClick(message(), Qt::Key_Escape);
        TRY_VERIFY(!fDesktop->isOpeningWorkspace());
    }
    /// The dialog with this name; null when it is not there.
    template <class Dialog>
    static Dialog* shown(const QString& name)
    {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (widget->objectName() == name && widget->isVisible())
                return qobject_cast<Dialog*>(widget);
        return nullptr;
    }
    static QList<PanelDock*> docksOf(MainWindow* window)
    {
        return window->findChild<PanelDocks*>()->docks();
    }

    QScopedPointer<QTemporaryDir> fFolder;
};
