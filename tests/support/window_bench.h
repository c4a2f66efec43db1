// SPDX-License-Identifier: MIT
#pragma once

#include "dialogs/error_reporter.h"
#include "plugins/plugin_loader.h"
#include "support/patience.h"
#include "support/redis_server.h"
#include "windows/main_window.h"
#include "windows/panel_dock.h"
#include "windows/panel_docks.h"

#include <tarvek/tarvek_widget.h>

#include <QAction>
#include <QMenuBar>
#include <QSettings>
#include <QtTest>

/// What tests of one window share: a real server as the robot, the plug-ins of the tests, and words
/// for what its user does.
class WindowBench
{
protected:
    void setUp()
    {
        QSettings().clear();
        fRobot.reset(new RedisServer);
        fPlugins.reset(new PluginLoader);
        fPlugins->loadFolder(TEST_PLUGIN_DIR);
        fErrors.reset(new ErrorReporter);
        openWindow();
    }
    void tearDown()
    {
        fWindow.reset();
        fErrors.reset();
        fPlugins.reset();
        fRobot.reset();
    }

    /// In place of the one that there is.
    void openWindow()
    {
        ConnectionSettings settings;
        settings.address.port = fRobot->port();
        fWindow.reset();
        fWindow.reset(
            new MainWindow({*fPlugins, *fErrors, "/some/where/"}, settings,
                           ZoBroker::create("test", settings.address.host, settings.address.port,
                                            settings.brokerOptions())));
        fWindow->show();
        QVERIFY(QTest::qWaitForWindowExposed(fWindow.data(), patience));
    }

    /// The one whose text begins so.
    QAction* action(const QString& text) const
    {
        for (QAction* action : fWindow->menuBar()->findChildren<QAction*>())
            if (action->text().remove('&').startsWith(text))
                return action;
        return nullptr;
    }

    TarvekWidget* probe() const { return fWindow->findChild<TarvekWidget*>("probe"); }
    void openProbe()
    {
        action("Probe")->trigger();
        QVERIFY(probe());
    }
    QList<PanelDock*> docks() const { return fWindow->findChild<PanelDocks*>()->docks(); }

    QScopedPointer<RedisServer> fRobot;
    QScopedPointer<PluginLoader> fPlugins;
    QScopedPointer<ErrorReporter> fErrors;
    QScopedPointer<MainWindow> fWindow;
};
