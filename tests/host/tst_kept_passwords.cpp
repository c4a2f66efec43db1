// SPDX-License-Identifier: MIT
#include "connection/recent_connections.h"
#include "dialogs/error_reporter.h"
#include "robots/saved_robots.h"
#include "support/desktop_bench.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/patience.h"
#include "support/register_test.h"

#include <tarvek/widget_interface.h>

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSignalSpy>
#include <QtTest>

/// Passwords in the desktop's keyring, for a robot that asks for one.
class TestKeptPasswords : public GuardedTest, private DesktopBench
{
    Q_OBJECT

private slots:
    void init();
    void cleanup()
    {
        tearDown();
        GuardedTest::cleanup();
    }
    void isKeptOnlyIfWanted();
    void isThereTheNextTime();
    void comesWithAChosenRobot();
    void goesToNoOtherRobot_data();
    void goesToNoOtherRobot();
    void aTypedOneCountsMore();
    void isForgottenWhenNotWantedAnyMore();
    void goesWithItsRobot();
    void aRobotOfTheCommandLineGetsIt();
    void aWayWithoutEncryptionDoesNotGetThatOfAnEncryptedOne();
    void aWrongOneIsAskedFor();
    void aNewDialogStillWantsIt();
    void aRobotThatIsNotRememberedLeavesItAlone();
    void aKeyringThatDoesNotAnswerIsCancelled();
    void aPlugInIsLeftNone();
    void withoutAKeyringOneIsToldAndConnected();
    void theSystemsKeyringNeedNotBeThere();

private:
    ConnectionSettings alice() const;
    QString name() const { return keyringName(alice()); }
    QLineEdit* passwordEdit() const
    {
        return fDesktop->connectDialog()->findChild<QLineEdit*>("password");
    }
    void pressConnect() const;
    void keepAndName();
};

void TestKeptPasswords::init()
{
    setUp();
    RedisServer::Options options;
    options.users = {"alice on >sesame ~* +@all"};
    fRobot.reset(new RedisServer(options));
}

ConnectionSettings TestKeptPasswords::alice() const
{
    ConnectionSettings settings;
    settings.address.port = fRobot->port();
    settings.user = "alice";
    settings.keepsPassword = true;
    return settings;
}

void TestKeptPasswords::pressConnect() const
{
    QTest::keyClick(fDesktop->connectDialog()->findChild<QLineEdit*>("user"), Qt::Key_Return);
    TRY_VERIFY(!fDesktop->isConnecting());
}

/// The robot is saved with its password, and the command line names it.
void TestKeptPasswords::keepAndName()
{
    fKeyring->passwords[name()] = "sesame";
    saveRobot({"Arm", alice()});
    fLine = robotLine(*fRobot);
    fLine.settings = alice();
    fLine.settings.keepsPassword = false; // there is no option for it
}

void TestKeptPasswords::isKeptOnlyIfWanted()
{
    for (const bool keeps : {false, true}) {
        fLine = robotLine(*fRobot);
        fLine.settings = alice();
        fLine.settings.password = "sesame";
        fLine.settings.keepsPassword = keeps;
        start();
        QVERIFY(window());
        QCOMPARE(fKeyring->passwords.size(), std::size_t(keeps));
    }
    QCOMPARE(fKeyring->passwords[name()], std::string("sesame"));
    QSettings().sync();
    QFile file(QSettings().fileName());
    QVERIFY(file.open(QIODevice::ReadOnly) && !file.readAll().contains("sesame"));
}

void TestKeptPasswords::isThereTheNextTime()
{
    fKeyring->passwords[name()] = "sesame";
    saveRobot({"Arm", alice()});
    rememberLastRobot(alice());
    start();
    TRY_COMPARE(passwordEdit()->text(), QString("sesame"));
    pressConnect();
    QVERIFY(window());
}

void TestKeptPasswords::comesWithAChosenRobot()
{
    fKeyring->passwords[name()] = "sesame";
    saveRobot({"Arm", alice()});
    start();
    QVERIFY(passwordEdit()->text().isEmpty());
    fDesktop->connectDialog()->findChild<QListWidget*>("robots")->setCurrentRow(0);
    TRY_COMPARE(passwordEdit()->text(), QString("sesame"));
    QVERIFY(fDesktop->connectDialog()->findChild<QCheckBox*>("keep")->isChecked());
}

void TestKeptPasswords::goesToNoOtherRobot_data()
{
    QTest::addColumn<QString>("field");
    for (const char* field : {"user", "ssh", "prefix"})
        QTest::newRow(field) << field;
}

void TestKeptPasswords::goesToNoOtherRobot()
{
    QFETCH(QString, field);
    fKeyring->passwords[name()] = "sesame";
    saveRobot({"Arm", alice()});
    rememberLastRobot(alice());
    start();
    TRY_COMPARE(passwordEdit()->text(), QString("sesame"));
    QTest::keyClicks(fDesktop->connectDialog()->findChild<QLineEdit*>(field), "x");
    QVERIFY(passwordEdit()->text().isEmpty());
    start();
    TRY_COMPARE(passwordEdit()->text(), QString("sesame"));
    auto* host = fDesktop->connectDialog()->findChild<QComboBox*>("host")->lineEdit();
    host->end(false);
    QTest::keyClicks(host, "2");
    QVERIFY(passwordEdit()->text().isEmpty());
    start();
    TRY_COMPARE(passwordEdit()->text(), QString("sesame"));
    fDesktop->connectDialog()->findChild<QSpinBox*>("port")->stepUp();
    QVERIFY(passwordEdit()->text().isEmpty());
}

void TestKeptPasswords::aTypedOneCountsMore()
{
    fKeyring->passwords[name()] = "old-word";
    saveRobot({"Arm", alice()});
    rememberLastRobot(alice());
    start();
    QTest::keyClicks(passwordEdit(), "sesame"); // before the keyring answers
    QCOMPARE(fKeyring->questions, 1);
    QCoreApplication::processEvents(); // its answer waits there
    pressConnect();
    QVERIFY(window());
    QCOMPARE(fKeyring->passwords[name()], std::string("sesame"));
}

void TestKeptPasswords::isForgottenWhenNotWantedAnyMore()
{
    fKeyring->passwords[name()] = "sesame";
    saveRobot({"Arm", alice()});
    rememberLastRobot(alice());
    start();
    TRY_COMPARE(passwordEdit()->text(), QString("sesame"));
    fDesktop->connectDialog()->findChild<QCheckBox*>("keep")->setChecked(false);
    pressConnect();
    QVERIFY(window());
    QVERIFY(fKeyring->passwords.empty());
}

void TestKeptPasswords::goesWithItsRobot()
{
    fKeyring->passwords[name()] = "sesame";
    start();
    emit fDesktop->connectDialog()->robotDeleted(alice());
    QVERIFY(fKeyring->passwords.empty());
}

void TestKeptPasswords::aRobotOfTheCommandLineGetsIt()
{
    keepAndName();
    start();
    QVERIFY(window());
    QCOMPARE(window()->settings().password, std::string("sesame"));
    QCOMPARE(fKeyring->passwords[name()], std::string("sesame"));
    QVERIFY(recentConnections()[0].keepsPassword);
}

void TestKeptPasswords::aWayWithoutEncryptionDoesNotGetThatOfAnEncryptedOne()
{
    ConnectionSettings encrypted = alice();
    encrypted.tls = true;
    saveRobot({"Arm", encrypted});
    fKeyring->passwords[name()] = "sesame";
    fLine = robotLine(*fRobot);
    fLine.settings = alice();
    fLine.settings.keepsPassword = false;
    start();
    TRY_VERIFY(shownBox());
    QCOMPARE(fKeyring->questions, 0);
    QCOMPARE(fKeyring->passwords[name()], std::string("sesame"));
    clickOk(shownBox());
    TRY_VERIFY(fDesktop->connectDialog());
    QCOMPARE(passwordEdit()->text(), QString());
}

void TestKeptPasswords::aWrongOneIsAskedFor()
{
    keepAndName();
    fKeyring->passwords[name()] = "old-word";
    start();
    TRY_VERIFY(shownBox());
    QVERIFY2(shownBox()->text().contains("WRONGPASS"), qPrintable(shownBox()->text()));
    clickOk(shownBox());
    passwordEdit()->selectAll();
    QTest::keyClicks(passwordEdit(), "sesame");
    pressConnect();
    QVERIFY(window());
    QCOMPARE(fKeyring->passwords[name()], std::string("sesame"));
}

void TestKeptPasswords::aNewDialogStillWantsIt()
{
    keepAndName();
    start();
    QVERIFY(window());
    fDesktop->showConnectDialog();
    QVERIFY(fDesktop->connectDialog()->findChild<QCheckBox*>("keep")->isChecked());
    TRY_COMPARE(passwordEdit()->text(), QString("sesame"));
}

void TestKeptPasswords::aRobotThatIsNotRememberedLeavesItAlone()
{
    keepAndName();
    fLine.forgets = true;
    fLine.settings.password = "sesame";
    fKeyring->passwords[name()] = "old-word";
    start();
    QVERIFY(window());
    QCOMPARE(fKeyring->questions, 0);
    QCOMPARE(fKeyring->passwords[name()], std::string("old-word"));
}

void TestKeptPasswords::aKeyringThatDoesNotAnswerIsCancelled()
{
    keepAndName();
    fKeyring->isSilent = true;
    begin();
    TRY_VERIFY(fDesktop->connectDialog());
    const auto* progress = fDesktop->connectDialog()->findChild<QLabel*>("progress");
    QVERIFY2(progress->text().contains("keyring"), qPrintable(progress->text()));
    QCOMPARE(fKeyring->questions, 1);
    QTest::keyClick(fDesktop->connectDialog(), Qt::Key_Escape);
    QVERIFY(!fDesktop->isConnecting());
    QVERIFY(progress->text().isEmpty());
    QTest::keyClicks(passwordEdit(), "sesame");
    pressConnect();
    QVERIFY(window());
}

void TestKeptPasswords::aPlugInIsLeftNone()
{
    keepAndName();
    start();
    PanelPlugin* const plugin = fDesktop->plugins().find("Probe");
    window()->openPanel(plugin);
    QVERIFY(probe());
    QCOMPARE(plugin->panels->fBrokerOptions.user, std::string("alice"));
    QVERIFY(plugin->panels->fBrokerOptions.password.empty());
}

void TestKeptPasswords::withoutAKeyringOneIsToldAndConnected()
{
    fKeyring->isBroken = true;
    const QSignalSpy noted(fErrors.data(), &ErrorReporter::noted);
    fLine = robotLine(*fRobot);
    fLine.settings = alice();
    fLine.settings.password = "sesame";
    start();
    QVERIFY(window());
    TRY_COMPARE(noted.size(), 1);
    QCOMPARE(noted[0][0].toString(), QString("The password is not kept: there is no keyring"));
}

void TestKeptPasswords::theSystemsKeyringNeedNotBeThere()
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere");
    const auto keyring = systemKeyring();
    QString problem;
    std::string found = "nothing yet";
    keyring->read("me@arm", [&found](std::string& password) { found = password; });
    keyring->forget("me@arm");
    keyring->write("me@arm", "sesame", [&](const QString& cause) { problem = cause; });
    TRY_VERIFY(!problem.isEmpty());
    TRY_COMPARE(found, std::string());
}

REGISTER_TEST(TestKeptPasswords, HostApplication)
#include "tst_kept_passwords.moc"
