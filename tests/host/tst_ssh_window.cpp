// SPDX-License-Identifier: MIT
#include "connection/ssh_relay.h"
#include "dialogs/error_reporter.h"
#include "plugins/plugin_loader.h"
#include "support/fake_ssh.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/patience.h"
#include "support/redis_server.h"
#include "support/register_test.h"
#include "support/robot.h"
#include "windows/main_window.h"

#include <QAction>
#include <QLabel>
#include <QtTest>

/// The window of a robot behind another host.
class TestSshWindow : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void sshMayAskAUserWhoReconnects();
    void theBarTellsWhatSshSays();

private:
    void openWindow();

    PluginLoader fPlugins;
    QScopedPointer<FakeSsh> fSsh;
    QScopedPointer<RedisServer> fRobot;
    QScopedPointer<ErrorReporter> fErrors;
    ConnectionSettings fSettings;
    QScopedPointer<MainWindow> fWindow;
};

void TestSshWindow::init()
{
    fSsh.reset(new FakeSsh);
    fRobot.reset(new RedisServer);
    fErrors.reset(new ErrorReporter);
    fSettings.address.port = fRobot->port();
    fSettings.jumpHost = "gate";
}

void TestSshWindow::cleanup()
{
    fWindow.reset();
    fSsh.reset();
    GuardedTest::cleanup();
}

/// Its ssh may not ask.
void TestSshWindow::openWindow()
{
    fSettings.relay = std::make_shared<SshRelay>("gate", fSettings.address);
    const ZoAddress& robot = fSettings.address;
    fWindow.reset(new MainWindow(
        {fPlugins, *fErrors, "/some/where/", defaultLossLimit}, fSettings,
        ZoBroker::create("test", robot.host, robot.port, fSettings.brokerOptions())));
}

void TestSshWindow::sshMayAskAUserWhoReconnects()
{
    openWindow();
    QVERIFY(fSsh->starts().last().contains("BatchMode=yes"));
    const auto actions = fWindow->findChildren<QAction*>();
    for (const char* text : {"Disconnect", "Reconnect"}) {
        const auto found = std::find_if(actions.begin(), actions.end(), [text](QAction* action) {
            return action->text().remove('&') == text;
        });
        QVERIFY(found != actions.end());
        (*found)->trigger();
    }
    TRY_VERIFY(fWindow->monitor().state().connected && fSsh->starts().size() >= 2);
    QVERIFY2(!fSsh->starts().last().contains("BatchMode"), qPrintable(fSsh->starts().last()));
    const auto starts = fSsh->starts().size();
    fSettings.relay = std::make_shared<SshRelay>("gate", fSettings.address);
    fWindow->reconnect(fSettings); // given anew, and what tried them has had its answers
    TRY_VERIFY(fWindow->monitor().state().connected && fSsh->starts().size() > starts);
    QVERIFY2(!fSsh->starts().last().contains("BatchMode"), qPrintable(fSsh->starts().last()));
}

void TestSshWindow::theBarTellsWhatSshSays()
{
    openWindow();
    fSsh->act("echo 'pilot@gate: Permission denied' >&2; exit 255");
    fRobot->kill();
    const auto* bar = fWindow->findChild<QLabel*>("outageText");
    TRY_VERIFY(bar->text().endsWith("ssh says:\npilot@gate: Permission denied"));
}

REGISTER_TEST(TestSshWindow, HostApplication)
#include "tst_ssh_window.moc"
