// SPDX-License-Identifier: MIT
#include "robots/saved_robots.h"
#include "support/fake_ssh.h"
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "support/workspace_bench.h"

#include <QInputDialog>
#include <QtTest>

/// Robots of a workspace that want a password.
class TestWorkspacePasswords : public GuardedTest, private WorkspaceBench
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup()
    {
        tearDown();
        GuardedTest::cleanup();
    }
    void aRobotThatWantsAPasswordAsksForIt();
    void whoCanReadThePasswordIsTold();
    void withoutThePasswordTheRobotIsLeftOut();
    void aKeptPasswordIsUsed();
    void aKeptPasswordGoesNowhereElse();
    void aPasswordThatIsNotInTheKeyringIsNoHindrance();
};

void TestWorkspacePasswords::aRobotThatWantsAPasswordAsksForIt()
{
    RedisServer::Options options;
    options.users = {"alice on >sesame ~* +@all"};
    const RedisServer robot(options);
    ConnectionSettings settings = settingsOf(robot);
    settings.user = "alice";
    write({windowOf(settings)});
    openFile();
    for (const char* password : {"wrong", "sesame"}) {
        TRY_VERIFY(shown<QInputDialog>("workspacePassword"));
        const QPointer<QInputDialog> dialog = shown<QInputDialog>("workspacePassword");
        QVERIFY(dialog->labelText().contains("\"alice\""));
        QCOMPARE(dialog->textEchoMode(), QLineEdit::Password);
        dialog->setTextValue(password);
        QTest::keyClick(dialog, Qt::Key_Return);
        TRY_VERIFY(!dialog);
    }
    TRY_VERIFY(window() && probe());
    QVERIFY(fKeyring->passwords.empty()); // nobody wants it kept
}

void TestWorkspacePasswords::whoCanReadThePasswordIsTold()
{
    const FakeSsh ssh;
    RedisServer::Options options;
    options.defaultPassword = "sesame";
    const RedisServer plain(options);
    options.tls = true;
    const RedisServer encrypted(options);
    ConnectionSettings behindGate = settingsOf(plain);
    behindGate.jumpHost = "gate";
    ConnectionSettings byTls = settingsOf(encrypted);
    byTls.tls = true;
    byTls.caFile = QString::fromStdString(encrypted.caFile());
    const QList<QPair<ConnectionSettings, QString>> robots{
        {settingsOf(plain), "The way there is not encrypted"},
        {behindGate, "The way from gate on is not encrypted"},
        {byTls, ""}};
    for (const auto& [robot, warning] : robots) {
        write({windowOf(robot)});
        openFile();
        TRY_VERIFY(shown<QInputDialog>("workspacePassword"));
        const QString text = shown<QInputDialog>("workspacePassword")->labelText();
        QVERIFY2(text.contains(warning), qPrintable(text));
        QCOMPARE(text.contains("encrypted"), !warning.isEmpty());
    }
}

void TestWorkspacePasswords::withoutThePasswordTheRobotIsLeftOut()
{
    RedisServer::Options options;
    options.defaultPassword = "sesame";
    const RedisServer robot(options);
    write({windowOf(settingsOf(robot))});
    openFile();
    TRY_VERIFY(shown<QInputDialog>("workspacePassword"));
    QTest::keyClick(shown<QInputDialog>("workspacePassword"), Qt::Key_Escape);
    TRY_VERIFY(message());
    QVERIFY2(message()->text().contains(settingsOf(robot).addressText()),
             qPrintable(message()->text()));
    QVERIFY(!window());
}

void TestWorkspacePasswords::aKeptPasswordIsUsed()
{
    RedisServer::Options options;
    options.defaultPassword = "sesame";
    const RedisServer robot(options);
    ConnectionSettings settings = settingsOf(robot);
    settings.keepsPassword = true;
    saveRobot({"Mine", settings});
    fKeyring->passwords[keyringName(settings)] = "sesame";
    write({windowOf(settings)});
    openFile();
    TRY_VERIFY(window() && probe());
    QCOMPARE(fKeyring->passwords.size(), size_t(1));
}

void TestWorkspacePasswords::aKeptPasswordGoesNowhereElse()
{
    RedisServer::Options options;
    options.defaultPassword = "sesame";
    const RedisServer robot(options);
    ConnectionSettings settings = settingsOf(robot);
    settings.keepsPassword = true;
    settings.tls = true;
    saveRobot({"Mine", settings});
    fKeyring->passwords[keyringName(settings)] = "sesame";
    settings.tls = false; // as somebody would like to have it
    write({windowOf(settings)});
    openFile();
    TRY_VERIFY(shown<QInputDialog>("workspacePassword"));
    QCOMPARE(fKeyring->questions, 0);
}

void TestWorkspacePasswords::aPasswordThatIsNotInTheKeyringIsNoHindrance()
{
    ConnectionSettings settings = settingsOf(*fRobot);
    settings.keepsPassword = true;
    saveRobot({"Mine", settings});
    write({windowOf(settings)});
    openFile();
    QCOMPARE(fKeyring->questions, 1);
    TRY_VERIFY(window() && probe());
}

REGISTER_TEST(TestWorkspacePasswords, HostApplication)
#include "tst_workspace_passwords.moc"
