// SPDX-License-Identifier: MIT
#include "desktop_program.h"
#include "support/guarded_test.h"
#include "support/password_file.h"
#include "support/patience.h"
#include "support/register_test.h"

#include <QtTest>

#include <csignal>

/// The program tarvek-desktop, as a process.
class TestProgram : public GuardedTest
{
    Q_OBJECT

private slots:
    void helpAndVersionNeedNoDisplay_data();
    void helpAndVersionNeedNoDisplay();
    void refusesNonsenseWithAReason();
    void findsItsPanelByItself();
    void aSignalSavesTheArrangementAndEndsIt_data();
    void aSignalSavesTheArrangementAndEndsIt();
    void ignoresTheHangUpThatItWasToldToIgnore();
    void staysWhenTheRobotIsNotThere();
    void signsInWithThePasswordOfAFile();
    void aQuestionOfSshEndsWithIt();
};

void TestProgram::helpAndVersionNeedNoDisplay_data()
{
    QTest::addColumn<QString>("start");
    QTest::newRow("--help") << "Usage: ";
    QTest::newRow("--help-all") << "Usage: ";
    QTest::newRow("-h") << "Usage: ";
    QTest::newRow("--version") << "Tarvek Desktop ";
    QTest::newRow("-v") << "Tarvek Desktop ";
}

void TestProgram::helpAndVersionNeedNoDisplay()
{
    QFETCH(QString, start);
    DesktopProgram desktop(TARVEK_DESKTOP, {QTest::currentDataTag()}, "xcb");
    desktop.start();
    QVERIFY(!desktop.waitForLine(start).isEmpty());
    QCOMPARE(desktop.waitForExit(), 0);
    QCOMPARE(desktop.warnings(), QString());
}

void TestProgram::refusesNonsenseWithAReason()
{
    DesktopProgram desktop(TARVEK_DESKTOP, {"--connect", "robot:x"});
    desktop.start();
    QCOMPARE(desktop.waitForExit(), 2);
    QVERIFY2(desktop.errors().contains("the port must be a number"), qPrintable(desktop.errors()));
}

void TestProgram::findsItsPanelByItself()
{
    const RedisServer robot;
    DesktopProgram desktop(TARVEK_DESKTOP,
                           DesktopProgram::wordsFor(robot) + QStringList{"--panel", "Glimmet"});
    desktop.start();
    QVERIFY(desktop.waitForDialogOf("libglimmet.so"));
    QCOMPARE(robot.clients(), 1); // the window and its panel share the connection
    desktop.signal(SIGTERM);
    QVERIFY(desktop.waitForFinished(patience));
    QCOMPARE(desktop.warnings(), QString());
    TRY_COMPARE(robot.clients(), 0);
}

void TestProgram::aSignalSavesTheArrangementAndEndsIt_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void TestProgram::aSignalSavesTheArrangementAndEndsIt()
{
    QFETCH(int, number);
    const RedisServer robot;
    DesktopProgram desktop(TARVEK_DESKTOP,
                           DesktopProgram::wordsFor(robot) + QStringList{"--panel", "Glimmet"});
    desktop.start();
    QVERIFY(desktop.waitForDialogOf("libglimmet.so")); // which is open all the time
    QVERIFY(!desktop.settings().contains("geometry"));
    desktop.signal(number);
    QCOMPARE(desktop.waitForExit(), 0);
    QVERIFY2(desktop.settings().contains("geometry"), desktop.settings());
    QCOMPARE(desktop.warnings(), QString());
}

void TestProgram::ignoresTheHangUpThatItWasToldToIgnore()
{
    const RedisServer robot;
    DesktopProgram desktop("nohup", QStringList{TARVEK_DESKTOP} + DesktopProgram::wordsFor(robot) +
                                        QStringList{"--panel", "Glimmet"});
    desktop.start();
    QVERIFY(desktop.waitForDialogOf("libglimmet.so"));
    desktop.signal(SIGHUP);
    desktop.signal(SIGTERM);
    QCOMPARE(desktop.waitForExit(), 0); // by the second one: the first has no other effect
    QVERIFY(desktop.settings().contains("geometry"));
}

void TestProgram::staysWhenTheRobotIsNotThere()
{
    RedisServer robot;
    const QStringList words = DesktopProgram::wordsFor(robot);
    robot.kill();
    DesktopProgram desktop(TARVEK_DESKTOP, words);
    desktop.start();
    // The error box and the connect dialog wait for the user: the platform complains of each.
    QVERIFY(desktop.waitUntil([&] { return desktop.errors().count("This plugin") >= 2; }));
    QCOMPARE(desktop.state(), QProcess::Running);
    desktop.signal(SIGTERM);
    QCOMPARE(desktop.waitForExit(), 0);
    QCOMPARE(desktop.warnings(), QString());
}

void TestProgram::signsInWithThePasswordOfAFile()
{
    RedisServer::Options options;
    options.users = {"reader on >look ~* +@all"};
    options.defaultPassword = "another";
    const RedisServer robot(options);
    PasswordFile file("look");
    file.setPermissions(QFile::ReadOwner | QFile::ReadOther);
    DesktopProgram desktop(TARVEK_DESKTOP,
                           DesktopProgram::wordsFor(robot) +
                               QStringList{"--user", "reader", "--password-file", file.fileName()});
    desktop.start();
    TRY_VERIFY(robot.command({"CLIENT", "LIST"}).find("user=reader") != std::string::npos);
    QVERIFY(desktop.waitForError("chmod 600 '" + file.fileName()));
    QCOMPARE(desktop.warnings().count('\n'), 0);
}

void TestProgram::aQuestionOfSshEndsWithIt()
{
    DesktopProgram ssh("/bin/sh", {"-c", "\"$0\" 'Password:'; exit 1", TARVEK_DESKTOP});
    QProcessEnvironment environment = ssh.processEnvironment();
    environment.insert("TARVEK_ANSWERS_SSH", "1");
    ssh.setProcessEnvironment(environment);
    ssh.start();
    QVERIFY(ssh.waitForError("This plugin")); // of each window the platform complains
    QCOMPARE(ssh.children().size(), 1);
    const qint64 question = ssh.children()[0];
    QVERIFY(!hasEnded(question));
    ssh.kill();
    TRY_VERIFY(hasEnded(question));
}

REGISTER_TEST(TestProgram, QCoreApplication)
#include "tst_program.moc"
