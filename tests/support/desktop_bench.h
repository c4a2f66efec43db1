// SPDX-License-Identifier: MIT
#pragma once

#include "desktop.h"
#include "dialogs/error_reporter.h"
#include "support/fake_keyring.h"
#include "support/patience.h"
#include "support/redis_server.h"

#include <tarvek/tarvek_widget.h>

#include <QComboBox>
#include <QLineEdit>
#include <QSettings>
#include <QSignalSpy>
#include <QSpinBox>
#include <QtTest>

/// What tests of the whole desktop share: one with a real server as the robot, and words for what
/// its user does.
class DesktopBench
{
protected:
    void setUp()
    {
        QSettings().clear();
        fRobot.reset(new RedisServer);
        fErrors.reset(new ErrorReporter);
        fKeyring = std::make_shared<FakeKeyring::Content>();
        fLine = CommandLine();
        fLine.pluginDirs = QStringList(TEST_PLUGIN_DIR);
    }
    void tearDown()
    {
        fFinished.reset();
        fDesktop.reset();
        fErrors.reset();
        fRobot.reset();
    }

    void start()
    {
        begin();
        TRY_VERIFY(!fDesktop->isConnecting());
    }
    /// The same, without waiting for a robot of the command line.
    void begin()
    {
        fDesktop.reset(new Desktop(fLine, *fErrors, std::make_unique<FakeKeyring>(fKeyring)));
        fFinished.reset(new QSignalSpy(fDesktop.data(), &Desktop::finished));
        fDesktop->start();
    }
    CommandLine robotLine(const RedisServer& robot) const
    {
        CommandLine line = fLine;
        line.settings.address.port = robot.port();
        line.connectAtOnce = true;
        return line;
    }

    MainWindow* window() const
    {
        return fDesktop->windows().isEmpty() ? nullptr : fDesktop->windows().last();
    }
    TarvekWidget* probe() const { return window()->findChild<TarvekWidget*>("probe"); }

    /// Fills the connect dialog in, presses Enter, and waits for what comes of it.
    void typeRobot(int port) const
    {
        beginTypedRobot(port);
        TRY_VERIFY(!fDesktop->isConnecting());
    }
    /// The same, without waiting.
    void beginTypedRobot(int port) const
    {
        ConnectDialog* dialog = fDesktop->connectDialog();
        QVERIFY(dialog && dialog->isVisible());
        auto* host = dialog->findChild<QComboBox*>("host");
        host->lineEdit()->selectAll();
        QTest::keyClicks(host->lineEdit(), "127.0.0.1");
        auto* box = dialog->findChild<QSpinBox*>("port");
        box->selectAll();
        QTest::keyClicks(box, QString::number(port));
        QTest::keyClick(dialog->findChild<QLineEdit*>("user"), Qt::Key_Return);
    }

    QScopedPointer<RedisServer> fRobot;
    QScopedPointer<ErrorReporter> fErrors;
    std::shared_ptr<FakeKeyring::Content> fKeyring;
    QScopedPointer<Desktop> fDesktop;
    QScopedPointer<QSignalSpy> fFinished;
    CommandLine fLine;
};
