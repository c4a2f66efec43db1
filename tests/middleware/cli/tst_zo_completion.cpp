// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/password_file.h"
#include "support/register_test.h"
#include "support/zo_program.h"

#include <QtTest>

#include <algorithm>

/// What the program `zo` tells a shell that asks how a line goes on.
class TestZoCompletion : public GuardedTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void commandsAndTheirOptionsAreOffered_data();
    void commandsAndTheirOptionsAreOffered();
    void keysAreOfferedWhereTheyMayStand_data();
    void keysAreOfferedWhereTheyMayStand();
    void aPasswordOpensTheRobot();
    void withoutARobotThereIsNothing();
    void aRobotThatSaysNothingHoldsUpNobody();

private:
    /// What is offered behind the words that lead to the robot.
    QByteArray offered(const QStringList& words) const;

    QScopedPointer<RedisServer> fRobot;
};

namespace {

Ended completed(const QStringList& words)
{
    return run(QStringList{"--complete"} + words);
}

} // namespace

void TestZoCompletion::initTestCase()
{
    GuardedTest::initTestCase();
    fRobot.reset(new RedisServer);
    for (const char* key : {"Arm/Elbow", "Arm/Wrist", "Leg/Knee", "-minus"})
        fRobot->command({"SET", key, "1"});
}

QByteArray TestZoCompletion::offered(const QStringList& words) const
{
    const Ended ended = completed(QStringList{"--connect", addressOf(*fRobot)} + words);
    QByteArrayList lines = ended.output.split('\n');
    std::sort(lines.begin(), lines.end());
    return ended.status == 0 ? lines.join(' ').trimmed()
                             : "status " + QByteArray::number(ended.status);
}

void TestZoCompletion::commandsAndTheirOptionsAreOffered_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QByteArray>("texts");
    QTest::newRow("commands") << QStringList{"re"} << QByteArray("record replay-control");
    QTest::newRow("behind dashes") << QStringList{"--", "g"} << QByteArray("get");
    QTest::newRow("options") << QStringList{"--pl"} << QByteArray("--plain");
    QTest::newRow("of watch") << QStringList{"watch", "--co"} << QByteArray("--count");
    QTest::newRow("of others") << QStringList{"get", "--co"} << QByteArray();
    QTest::newRow("of the recorder") << QStringList{"record", "--gap"} << QByteArray("--gap-rows");
    QTest::newRow("files") << QStringList{"--password-file", "x"} << QByteArray("status 3");
    QTest::newRow("files of the recorder")
        << QStringList{"record", "--config", ""} << QByteArray("status 3");
    QTest::newRow("numbers") << QStringList{"--timeout", ""} << QByteArray();
    QTest::newRow("replay") << QStringList{"replay-control", "p"} << QByteArray("pause play");
    QTest::newRow("replay's number") << QStringList{"replay-control", "step", ""} << QByteArray();
    QTest::newRow("no command") << QStringList{"frobnicate", ""} << QByteArray();
    QTest::newRow("no option") << QStringList{"--frobnicate", ""} << QByteArray();
}

void TestZoCompletion::commandsAndTheirOptionsAreOffered()
{
    QFETCH(QStringList, words);
    QTEST(offered(words), "texts");
}

void TestZoCompletion::keysAreOfferedWhereTheyMayStand_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QByteArray>("texts");
    const QByteArray arm = "Arm/Elbow Arm/Wrist";
    QTest::newRow("all") << QStringList{"get", ""} << "-minus " + arm + " Leg/Knee";
    QTest::newRow("first") << QStringList{"get", "Arm"} << arm;
    QTest::newRow("later") << QStringList{"get", "a", "b", "Arm"} << arm;
    QTest::newRow("behind dashes") << QStringList{"get", "--", "-"} << QByteArray("-minus");
    QTest::newRow("watch") << QStringList{"watch", "--period", "60", "Arm"} << arm;
    QTest::newRow("set") << QStringList{"set", "Arm"} << arm;
    QTest::newRow("value of set") << QStringList{"set", "a", "Arm"} << QByteArray();
    QTest::newRow("part of a key") << QStringList{"list", "Arm"} << QByteArray();
    QTest::newRow("check") << QStringList{"check", ""} << QByteArray();
    QTest::newRow("record") << QStringList{"record", "Arm"} << arm;
    QTest::newRow("record, mixed") << QStringList{"record", "a", "--follow", "Arm"} << arm;
    QTest::newRow("record, dashes") << QStringList{"record", "--", "-"} << QByteArray("-minus");
    QTest::newRow("none such") << QStringList{"get", "Head"} << QByteArray();
}

void TestZoCompletion::keysAreOfferedWhereTheyMayStand()
{
    QFETCH(QStringList, words);
    QTEST(offered(words), "texts");
}

void TestZoCompletion::aPasswordOpensTheRobot()
{
    RedisServer::Options options;
    options.defaultPassword = "secret";
    const RedisServer robot(options);
    robot.command({"SET", "Arm/Elbow", "1"});
    const QStringList words{"--connect", addressOf(robot)};
    QCOMPARE(completed(words + QStringList{"get", ""}).output, QByteArray());
    const PasswordFile file("secret");
    const Ended ended =
        completed(words + QStringList{"--password-file", file.fileName(), "get", ""});
    QCOMPARE(ended.output, QByteArray("Arm/Elbow\n"));
    QCOMPARE(ended.errors, QByteArray());
}

void TestZoCompletion::withoutARobotThereIsNothing()
{
    const Ended ended = completed({"--connect", "127.0.0.1:1", "get", ""});
    QCOMPARE(ended.status, 0);
    QCOMPARE(ended.output, QByteArray());
    QCOMPARE(ended.errors, QByteArray());
}

void TestZoCompletion::aRobotThatSaysNothingHoldsUpNobody()
{
    RedisServer robot;
    robot.stop();
    const Ended ended =
        completed({"--connect", addressOf(robot), "--timeout", "600000", "get", ""});
    QCOMPARE(ended.status, 0);
    QCOMPARE(ended.output, QByteArray());
}

REGISTER_TEST(TestZoCompletion, QCoreApplication)
#include "tst_zo_completion.moc"
