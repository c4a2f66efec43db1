// SPDX-License-Identifier: MIT
#include "support/desktop_bench.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/patience.h"
#include "support/redis_server.h"
#include "support/register_test.h"
#include "support/robot.h"

#include <tarvek/tarvek_widget.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QtTest>

/// Connecting again to a robot that refuses its user, and what else its user may do then.
class TestRefusedRobot : public GuardedTest, private DesktopBench
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup()
    {
        tearDown();
        GuardedTest::cleanup();
    }
    void aRefusedRobotIsConnectedAgainWithItsPanels();
    void aRefusedCertificateIsFinalUntilConnectedAgain();
    void aWrongAnswerToARefusalAsksAgain();
    void anotherRobotInPlaceOfARefusedOneGetsAWindowOfItsOwn();
    void aNewConnectionToARefusedRobotIsANewWindow();
    void aPasswordGivenInOneWindowIsThatOfAllThatShareItsLink();
    void aPasswordGivenInANewWindowIsOfferedInTheRefusedOne();
    void aLinkThatMendsItselfDoesSoWithThePasswordGivenElsewhere();
    void aLinkThatIsUpTakesThePasswordGivenElsewhere();
    void aFileThatIsGoneMeanwhileIsNamedAndChangesNothing();

private:
    void startWithPassword();
    void changePassword();
    void pressConnectAgain();
    void type(const QString& field, const QString& text);
    void pressConnect();
    QString detailText() const;
    QString passwordInDialog() const
    {
        return fDesktop->connectDialog()->findChild<QLineEdit*>("password")->text();
    }
    qint64 refusals() const;
    int logins() const;
};

/// A window with a panel, for a user whose password can be changed.
void TestRefusedRobot::startWithPassword()
{
    RedisServer::Options options;
    options.users = {"alice on >old-word ~* +@all"};
    fRobot.reset(new RedisServer(options));
    fLine = robotLine(*fRobot);
    fLine.settings.user = "alice";
    fLine.settings.password = "old-word";
    fLine.panel = "Probe";
    start();
    TRY_VERIFY(probe());
}

/// On the robot, which then ends all connections of the user.
void TestRefusedRobot::changePassword()
{
    fRobot->command({"ACL", "SETUSER", "alice", "resetpass", ">new-word"});
    fRobot->command({"CLIENT", "KILL", "USER", "alice"});
    TRY_VERIFY(window()->monitor().state().refused);
}

void TestRefusedRobot::pressConnectAgain()
{
    auto* button = window()->findChild<QPushButton*>("connectAgain");
    QVERIFY(button && button->isVisible());
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(fDesktop->connectDialog() && fDesktop->connectDialog()->isVisible());
}

/// Types into a field of the connect dialog, in place of what is there.
void TestRefusedRobot::type(const QString& field, const QString& text)
{
    auto* edit = fDesktop->connectDialog()->findChild<QLineEdit*>(field);
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, text);
}

void TestRefusedRobot::pressConnect()
{
    QTest::keyClick(fDesktop->connectDialog()->findChild<QLineEdit*>("user"), Qt::Key_Return);
    TRY_VERIFY(!fDesktop->isConnecting());
}

/// How many logins the robot has refused.
qint64 TestRefusedRobot::refusals() const
{
    return QString::fromStdString(fRobot->command({"INFO", "errorstats"}))
        .section("errorstat_WRONGPASS:count=", 1)
        .section('\r', 0, 0)
        .toLongLong();
}

/// How many links of the user are up.
int TestRefusedRobot::logins() const
{
    return QString::fromStdString(fRobot->command({"CLIENT", "LIST"})).count("user=alice ");
}

QString TestRefusedRobot::detailText() const
{
    return window()->findChild<QLabel*>("connectionDetail")->text();
}

void TestRefusedRobot::aRefusedRobotIsConnectedAgainWithItsPanels()
{
    startWithPassword();
    const QPointer<QObject> panel = probe();
    changePassword();
    TRY_COMPARE(panel->property("disconnections"), QVariant(1));
    QVERIFY2(detailText().startsWith("Not trying again"), qPrintable(detailText()));
    QVERIFY2(detailText().contains("WRONGPASS"), qPrintable(detailText()));

    pressConnectAgain();
    const ConnectDialog& dialog = *fDesktop->connectDialog();
    QCOMPARE(dialog.findChild<QSpinBox*>("port")->value(), fRobot->port());
    QCOMPARE(dialog.findChild<QLineEdit*>("user")->text(), QString("alice"));
    type("password", "new-word");
    pressConnect();
    TRY_VERIFY(window()->monitor().state().connected);
    TRY_VERIFY(!fDesktop->connectDialog());
    QCOMPARE(fDesktop->windows().size(), 1);
    QVERIFY(probe() == panel);
    QCOMPARE(panel->property("disconnections"), QVariant(1));
    TRY_COMPARE(fRobot->clients(), 1); // the window and its panel share a link

    // Panels that are opened from now on sign in with the new word, too.
    window()->openPanel(fDesktop->plugins().find("Probe"));
    QVERIFY(!shownBox());
    QCOMPARE(window()->findChildren<TarvekWidget*>("probe").size(), 2);
}

void TestRefusedRobot::aRefusedCertificateIsFinalUntilConnectedAgain()
{
    RedisServer::Options options;
    options.tls = true;
    fRobot.reset(new RedisServer(options));
    fLine = robotLine(*fRobot);
    fLine.settings.tls = true;
    fLine.settings.caFile = QString::fromStdString(fRobot->caFile());
    fLine.panel = "Probe";
    start();
    TRY_VERIFY(probe());
    const QPointer<QObject> panel = probe();

    fRobot->restartAsAnother();
    TRY_VERIFY(window()->monitor().state().refused);
    QVERIFY2(detailText().contains("certificate"), qPrintable(detailText()));
    TRY_COMPARE(panel->property("disconnections"), QVariant(1));

    pressConnectAgain();
    pressConnect(); // the file that is named there holds the new authority by now
    TRY_VERIFY(window()->monitor().state().connected);
    QVERIFY(probe() == panel);
}

void TestRefusedRobot::aWrongAnswerToARefusalAsksAgain()
{
    startWithPassword();
    changePassword();
    fDesktop->showConnectDialog();
    type("user", "somebody"); // for another robot
    pressConnectAgain();
    QCOMPARE(fDesktop->connectDialog()->findChild<QLineEdit*>("user")->text(), QString("alice"));
    type("password", "guess");
    pressConnect();
    QVERIFY(shownBox());
    QVERIFY2(shownBox()->text().contains("WRONGPASS"), qPrintable(shownBox()->text()));
    clickOk(shownBox());
    QVERIFY(window()->monitor().state().refused);
    QVERIFY(fDesktop->connectDialog()->isVisible());
    type("password", "new-word");
    pressConnect();
    TRY_VERIFY(window()->monitor().state().connected);
    QCOMPARE(fDesktop->windows().size(), 1);
}

void TestRefusedRobot::anotherRobotInPlaceOfARefusedOneGetsAWindowOfItsOwn()
{
    const RedisServer other;
    startWithPassword();
    const MainWindow* const refused = window();
    changePassword();
    pressConnectAgain();
    type("user", "");
    type("password", "");
    typeRobot(other.port());
    QCOMPARE(fDesktop->windows().size(), 2);
    QVERIFY(window()->monitor().state().connected);
    QVERIFY(fDesktop->windows().first() == refused);
}

void TestRefusedRobot::aNewConnectionToARefusedRobotIsANewWindow()
{
    startWithPassword();
    changePassword();
    pressConnectAgain();
    fDesktop->showConnectDialog(); // for another after all
    type("password", "new-word");
    pressConnect();
    QCOMPARE(fDesktop->windows().size(), 2);
    QVERIFY(window()->monitor().state().connected);
    QVERIFY(fDesktop->windows().first()->monitor().state().refused);
}

void TestRefusedRobot::aPasswordGivenInOneWindowIsThatOfAllThatShareItsLink()
{
    startWithPassword();
    MainWindow* const first = window();
    fDesktop->connectTo(first->settings());
    TRY_COMPARE(fDesktop->windows().size(), 2);
    TRY_VERIFY(fDesktop->windows().last()->frontDock()); // its panel needs the old password
    changePassword();
    pressConnectAgain();
    type("password", "new-word");
    pressConnect();
    TRY_VERIFY(first->monitor().state().connected);
    const qint64 before = refusals();
    first->monitor().disconnect();
    // The link itself: a short gap is not shown.
    TRY_VERIFY(!first->monitor().busiest().connected);
    first->reconnect();
    TRY_VERIFY(first->monitor().busiest().connected || first->monitor().state().refused);
    first->openPanel(fDesktop->plugins().find("Probe"));
    QVERIFY2(!shownBox(), qPrintable(shownBox() ? shownBox()->text() : QString()));
    QCOMPARE(refusals(), before);
}

void TestRefusedRobot::aPasswordGivenInANewWindowIsOfferedInTheRefusedOne()
{
    startWithPassword();
    MainWindow* const refused = window();
    changePassword();
    ConnectionSettings settings = refused->settings();
    settings.password = "new-word";
    fDesktop->connectTo(settings);
    TRY_COMPARE(fDesktop->windows().size(), 2);
    refused->reconnect();
    QCOMPARE(passwordInDialog(), QString("new-word"));
    pressConnect();
    TRY_VERIFY(refused->monitor().state().connected);
    QCOMPARE(fDesktop->windows().size(), 2);
}

void TestRefusedRobot::aLinkThatMendsItselfDoesSoWithThePasswordGivenElsewhere()
{
    RedisServer::Options options;
    options.defaultPassword = "old-word";
    fRobot.reset(new RedisServer(options));
    fLine = robotLine(*fRobot);
    fLine.settings.password = "old-word";
    start();
    TRY_VERIFY(window());
    fRobot->kill();
    TRY_VERIFY(!window()->monitor().busiest().connected);
    ConnectionSettings settings = window()->settings();
    settings.password = "new-word";
    settings.timeout = 20000; // a link of its own
    const MainWindow other({fDesktop->plugins(), *fErrors, "/some/where/"}, settings,
                           ZoBroker::begin("test", settings.address.host, settings.address.port,
                                           settings.brokerOptions()));
    window()->learnFrom(other);
    fRobot->restartWithPassword("new-word");
    TRY_VERIFY(window()->monitor().busiest().connected || window()->monitor().state().refused);
    QCOMPARE(refusals(), qint64(0));
    QVERIFY(window()->monitor().busiest().connected);
}

void TestRefusedRobot::aLinkThatIsUpTakesThePasswordGivenElsewhere()
{
    startWithPassword();
    MainWindow* const first = window();
    fRobot->command({"ACL", "SETUSER", "alice", "resetpass", ">new-word"});
    ConnectionSettings settings = first->settings();
    settings.password = "new-word";
    settings.timeout = 20000; // a link of its own
    fDesktop->connectTo(settings);
    TRY_COMPARE(fDesktop->windows().size(), 2);
    fRobot->command({"CLIENT", "KILL", "USER", "alice"});
    TRY_VERIFY(logins() == 2 || first->monitor().state().refused);
    QCOMPARE(refusals(), qint64(0));
    TRY_VERIFY(first->monitor().busiest().connected);
}

void TestRefusedRobot::aFileThatIsGoneMeanwhileIsNamedAndChangesNothing()
{
    startWithPassword();
    ConnectionSettings settings = window()->settings();
    settings.password = "new-word";
    settings.tls = true;
    settings.caFile = "/nowhere/authorities.pem";
    const std::string problem = errorOf([&] { window()->reconnect(settings); });
    QVERIFY2(contains(problem, "/nowhere/authorities.pem"), problem.c_str());
    QCOMPARE(window()->settings().password, std::string("old-word"));
    QVERIFY(!window()->settings().tls);
    QVERIFY(window()->monitor().state().connected);
}

REGISTER_TEST(TestRefusedRobot, HostApplication)
#include "tst_refused_robot.moc"
