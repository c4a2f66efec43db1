// SPDX-License-Identifier: MIT
#include "support/fake_robot.h"
#include "support/guarded_test.h"
#include "support/password_file.h"
#include "support/register_test.h"
#include "support/zo_program.h"

#include <QtTest>

#include <ctime>

namespace {

/// So many seconds ago, as a robot writes it.
std::string ago(std::time_t seconds)
{
    return std::to_string(std::time(nullptr) - seconds);
}

/// The lines of `text`, and the ages in them as "recent" when they are those of a robot that wrote
/// just now, however slow the test.
QByteArray withoutSeconds(QByteArray text)
{
    for (int seconds = 0; seconds < 60; ++seconds) {
        const QByteArray number = QByteArray::number(seconds);
        text.replace("\t" + number + "\n", "\trecent\n");
        text.replace("\"age\":" + number + "}", "\"age\":recent}");
    }
    return text;
}

QStringList asUser(const QString& user, const PasswordFile& password)
{
    return {"--user", user, "--password-file", password.fileName()};
}

} // namespace

/// The robots that share a server, as `zo` lists them and keeps to one of them.
class TestRobots : public GuardedTest
{
    Q_OBJECT

private slots:
    void eachIsALineWithItsPrefixAndAge();
    void programsGetJson();
    void ofAServerWithoutAnyThereIsNoLine();
    void behindAPrefixAreTheRobotsOfThatPart();
    void whoMayReadOneSeesTheAgeOfOne();
    void aServerThatSendsNamesForEverIsGivenUp();
    void everyCommandIsAboutTheRobotOfThePrefix();
    void anAccessListKeepsUsersToTheirRobot();
    void aBadPrefixIsWrongUse_data();
    void aBadPrefixIsWrongUse();
};

void TestRobots::eachIsALineWithItsPrefixAndAge()
{
    const RedisServer server;
    server.command({"MSET", "robot7/Robot/Alive", ago(0), "robot7/Arm", "1", "a/Robot/Alive",
                    ago(-100000), "Robot/Alive", "\"soon\"", "b\n/Robot/Alive",
                    "-9223372036854775807", "c/Robot/Alive", "9223372036854775807",
                    "robot8/Robot/AliveNot", "1"});
    server.command({"SET", "robot9/Robot/Alive", "0"});
    server.command({"HSET", "hash/Robot/Alive", "a", "1"});
    const Ended ended = run(at(server, {"robots"}));
    QCOMPARE(ended.errors, QByteArray());
    QCOMPARE(ended.status, 0);
    QByteArrayList lines = withoutSeconds(ended.output).split('\n');
    QCOMPARE(lines.size(), 7);
    QCOMPARE(lines.mid(0, 1), QByteArrayList{"\tunknown"});
    QVERIFY2(lines[1].startsWith("a/\t-9999") || lines[1] == "a/\t-100000", lines[1]);
    QCOMPARE(lines.mid(2, 3), (QByteArrayList{"b\\n/\tunknown", "c/\tunknown", "robot7/\trecent"}));
    QVERIFY2(lines[5].startsWith("robot9/\t"), lines[5]);
    QVERIFY(lines[5].mid(8).toLongLong() > 1700000000);
}

void TestRobots::programsGetJson()
{
    const RedisServer server;
    server.command({"MSET", "robot7/Robot/Alive", ago(0), "\"\n\xff/Robot/Alive", "[]"});
    const Ended ended = run(at(server, {"robots", "--json"}));
    QCOMPARE(ended.status, 0);
    QCOMPARE(withoutSeconds(ended.output),
             QByteArray("{\"prefix\":\"\\\"\\n\\udcff/\",\"age\":null}\n"
                        "{\"prefix\":\"robot7/\",\"age\":recent}\n"));
}

void TestRobots::ofAServerWithoutAnyThereIsNoLine()
{
    const RedisServer server;
    server.command({"SET", "Arm", "1"});
    const Ended ended = run(at(server, {"robots"}));
    QCOMPARE(ended.status, 0);
    QCOMPARE(ended.output, QByteArray());
    QCOMPARE(ended.errors, QByteArray());
}

void TestRobots::behindAPrefixAreTheRobotsOfThatPart()
{
    const RedisServer server;
    server.command({"MSET", "hall1/a/Robot/Alive", ago(0), "hall2/b/Robot/Alive", ago(0)});
    const Ended ended = run(at(server, {"--prefix", "hall2/", "robots"}));
    QCOMPARE(withoutSeconds(ended.output), QByteArray("b/\trecent\n"));
}

void TestRobots::whoMayReadOneSeesTheAgeOfOne()
{
    RedisServer::Options options;
    options.users = {"panel7 on >secret ~robot7/* -@all +mget +scan +ping"};
    const RedisServer server(options);
    server.command({"MSET", "robot7/Robot/Alive", ago(0), "robot8/Robot/Alive", ago(0)});
    const PasswordFile password("secret");
    const Ended ended = run(at(server, asUser("panel7", password) + QStringList{"robots"}));
    QCOMPARE(ended.status, 0);
    QCOMPARE(withoutSeconds(ended.output), QByteArray("robot7/\trecent\nrobot8/\tunknown\n"));
}

void TestRobots::aServerThatSendsNamesForEverIsGivenUp()
{
    const auto sendNames = answering("*2\r\n$1\r\n1\r\n*0\r\n");
    const FakeRobot server([&](FakeConnection& connection) {
        if (connection.number() == 0)
            answering("-ERR unknown command\r\n")(connection); // it knows of no cluster
        sendNames(connection);
    });
    const QString address = "127.0.0.1:" + QString::number(server.port());
    const Ended ended = run({"--connect", address, "--timeout", "100", "robots"});
    QCOMPARE(ended.status, 1);
    QCOMPARE(ended.output, QByteArray());
    QVERIFY2(ended.errors.contains("no reply to SCAN within 1500 ms"), ended.errors);
}

void TestRobots::everyCommandIsAboutTheRobotOfThePrefix()
{
    const RedisServer server;
    const auto behind = [&](const QString& prefix, const QStringList& words) {
        return run(at(server, QStringList{"--prefix", prefix} + words));
    };
    QCOMPARE(behind("robot7/", {"set", "Arm/Angle", "0.5"}).status, 0);
    QCOMPARE(behind("robot70/", {"set", "Arm/Angle", "1"}).status, 0);
    QCOMPARE(server.command({"GET", "robot7/Arm/Angle"}), std::string("0.5"));
    QCOMPARE(behind("robot7/", {"get", "Arm/Angle"}).output, QByteArray("Arm/Angle\tfloat\t0.5\n"));
    QCOMPARE(behind("robot7/", {"list"}).output, QByteArray("Arm/Angle\n"));
    QCOMPARE(behind("robot", {"list", "7/"}).output, QByteArray("7/Arm/Angle\n"));
    for (const QStringList& plain : {QStringList{}, QStringList{"--plain"}}) {
        const Ended watched =
            behind("robot70/",
                   plain + QStringList{"watch", "--count", "2", "--period", "20", "Arm/Angle"});
        QCOMPARE(watched.status, 0);
        QCOMPARE(watched.output.count("\tArm/Angle\tint\t1\n"), 2);
    }
    const Ended check = behind("robot7/", {"check"});
    QVERIFY2(check.output.contains("1 key behind robot7/, listed in "), check.output);
    QVERIFY(behind("robot7/", {"replay-control", "status"}).errors.contains("plays no recording"));
    server.command({"MSET", "robot7/Replay/State", "\"paused\"", "robot7/Replay/Time", "1",
                    "robot7/Replay/Speed", "2"});
    QCOMPARE(behind("robot7/", {"replay-control", "status"}).output,
             QByteArray("Replay/State\tstring\tpaused\nReplay/Time\tint\t1\n"
                        "Replay/Speed\tint\t2\n"));
}

void TestRobots::anAccessListKeepsUsersToTheirRobot()
{
    RedisServer::Options options;
    options.users = {"panel7 on >secret %R~robot7/* -@all +mget +scan +ping +hello "
                     "+client|setname +client|tracking +client|caching"};
    const RedisServer server(options);
    server.command({"MSET", "robot7/Arm", "7", "robot70/Arm", "70", "Arm", "0"});
    const PasswordFile password("secret");
    const auto asPanel = [&](const QString& prefix, const QStringList& words) {
        return run(
            at(server, asUser("panel7", password) + QStringList{"--prefix", prefix} + words));
    };
    QCOMPARE(asPanel("robot7/", {"get", "Arm"}).output, QByteArray("Arm\tint\t7\n"));
    QCOMPARE(asPanel("robot7/", {"list"}).output, QByteArray("Arm\n"));
    QCOMPARE(asPanel("robot70/", {"get", "Arm"}).output, QByteArray("Arm\tinvalid\t\n"));
    const Ended set = asPanel("robot7/", {"set", "Arm", "8"});
    QCOMPARE(set.status, 1);
    QVERIFY2(set.errors.contains("NOPERM"), set.errors);
    const Ended watch =
        asPanel("robot7/", {"watch", "--count", "3", "--period", "20", "Arm", "Leg"});
    QCOMPARE(watch.output.count("\tArm\tint\t7\n"), 3);
    QCOMPARE(asPanel("robot7/", {"check"}).status, 0);
    QCOMPARE(asPanel("robot70/", {"check"}).status, 1);
}

void TestRobots::aBadPrefixIsWrongUse_data()
{
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<QString>("fault");
    QTest::newRow("line break") << "a\nb"
                                << "prefix \"a?b\": there is a control character in it";
    QTest::newRow("blank") << "robot 7/"
                           << "there is a blank in it";
    QTest::newRow("long") << QString(100000, 'a') << "it is longer than 256 bytes";
    QTest::newRow("empty") << ""
                           << "--prefix needs a value";
}

void TestRobots::aBadPrefixIsWrongUse()
{
    QFETCH(QString, prefix);
    QFETCH(QString, fault);
    const Ended ended = run({"--prefix", prefix, "robots"});
    QCOMPARE(ended.status, 2);
    QVERIFY2(ended.errors.contains(fault.toUtf8()), ended.errors);
    QCOMPARE(linesIn(ended.errors), 1);
    QVERIFY(ended.errors.size() < 500);
}

REGISTER_TEST(TestRobots, QCoreApplication)
#include "tst_robots.moc"
