// SPDX-License-Identifier: MIT
#include "robot_program.h"
#include "support/files.h"
#include "support/guarded_test.h"
#include "support/password_file.h"
#include "support/patience.h"
#include "support/redis_cluster.h"
#include "support/register_test.h"
#include "support/zo_program.h"

#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

namespace {

QStringList signedIn(const QString& user, const PasswordFile& password)
{
    return {"--user", user, "--password-file", password.fileName()};
}

QStringList behind(const QString& prefix, const QStringList& words)
{
    return QStringList{"--prefix", prefix} + words;
}

QString addressOf(const RedisCluster& cluster, int node)
{
    return QString::fromStdString(cluster.address(node).toText());
}

/// The lines of zo robots without the seconds.
QStringList prefixesIn(const QByteArray& lines)
{
    QStringList prefixes;
    for (const QByteArray& line : lines.split('\n'))
        if (!line.isEmpty())
            prefixes += QString::fromUtf8(line.left(line.indexOf('\t')));
    return prefixes;
}

/// The first cells of a recording's rows behind the time.
QStringList cellsOf(const QByteArray& table)
{
    QStringList cells;
    for (const QByteArray& row : table.split('\n'))
        if (!row.isEmpty())
            cells += QString::fromUtf8(row.mid(row.indexOf(',') + 1)).trimmed();
    cells.removeDuplicates();
    return cells;
}

/// A simulated robot that publishes to `server`.
class SharingRobot : public RobotProgram
{
public:
    SharingRobot(const RedisServer& server, const QStringList& words)
        : RobotProgram(QStringList{"--connect", addressOf(server)} + words)
    {
        start();
        isThere = waitForLine("publishing to ").startsWith(addressOf(server));
    }
    bool isThere = false;
};

/// Whether robot7/ writes its sign of life anew before its values.
bool isToldBetweenTicks(const RedisServer& server)
{
    const std::string before = server.command({"GET", "robot7/Counter/Seconds"});
    server.command({"SET", "robot7/Robot/Alive", "1"});
    const auto isTold = [&server] { return server.command({"GET", "robot7/Robot/Alive"}) != "1"; };
    return QTest::qWaitFor(isTold, patience) &&
           server.command({"GET", "robot7/Counter/Seconds"}) == before;
}

} // namespace

/// Many robots on one server, each behind its prefix, as their users start them.
class TestManyRobots : public GuardedTest
{
    Q_OBJECT

private slots:
    void init() { fFolder = std::make_unique<QTemporaryDir>(); }
    void theRobotsOfAServerAreListed();
    void oneProcessSimulatesManyRobots();
    void theRobotsOfAClusterAreListed();
    void aRobotThatIsRefusedEndsAllOfItsProcess();
    void aSlowRobotTellsThatItIsThereBetweenItsTicks();
    void aRobotAloneOnItsServerWritesNoSign();
    void eachUserHasItsRobotOnly();
    void aReplayIsRuledBehindItsPrefix();
    void aReplayOnAServerOfItsOwnMayHaveAnyPrefix();

private:
    QString path(const QString& name) const { return fFolder->filePath(name); }

    std::unique_ptr<QTemporaryDir> fFolder;
};

void TestManyRobots::theRobotsOfAServerAreListed()
{
    const RedisServer server;
    const SharingRobot one(server, behind("robot7/", {"--keys", "20"}));
    const SharingRobot other(server, behind("r*[8]/", {"--keys", "30"}));
    QVERIFY(one.isThere && other.isThere);
    QCOMPARE(server.command({"DBSIZE"}), std::string("52"));
    const Ended robots = run(at(server, {"robots"}));
    QCOMPARE(robots.status, 0);
    QCOMPARE(prefixesIn(robots.output), (QStringList{"r*[8]/", "robot7/"}));
    QCOMPARE(linesIn(run(at(server, behind("robot7/", {"list"}))).output), 21);
    QCOMPARE(linesIn(run(at(server, behind("r*[8]/", {"list"}))).output), 31);
    // It is told again and again.
    server.command({"SET", "robot7/Robot/Alive", "1"});
    TRY_VERIFY(server.command({"GET", "robot7/Robot/Alive"}).size() >= 10);
}

void TestManyRobots::oneProcessSimulatesManyRobots()
{
    const RedisServer server;
    const QStringList words = {"--robots", "3", "--keys", "20", "--seed", "5"};
    SharingRobot robots(server, behind("r%/", words));
    QVERIFY(robots.isThere);
    QVERIFY2(robots.output().contains(" behind r1/ to r3/\n"), robots.output());
    QCOMPARE(prefixesIn(run(at(server, {"robots"})).output), (QStringList{"r1/", "r2/", "r3/"}));
    QCOMPARE(server.command({"DBSIZE"}), std::string("63"));
    QCOMPARE(server.clients(), 3);
    const auto goesOn = [&server](const std::string& prefix) {
        const std::string key = prefix + "Counter/ControlTicks";
        const std::string before = server.command({"GET", key});
        return QTest::qWaitFor([&] { return server.command({"GET", key}) != before; }, patience);
    };
    QVERIFY(goesOn("r1/") && goesOn("r2/") && goesOn("r3/"));
    robots.signal(SIGTERM);
    QCOMPARE(robots.waitForExit(), 0);
    QCOMPARE(robots.errors(), QString());
}

// Two of three masters at least, and a master that is not among the given addresses.
void TestManyRobots::theRobotsOfAClusterAreListed()
{
    const RedisCluster cluster;
    RobotProgram robots(
        {"--connect", addressOf(cluster, 0), "--prefix", "{r%}/", "--robots", "6", "--keys", "20"});
    robots.start();
    QVERIFY2(!robots.waitForLine("publishing to ").isEmpty(), qPrintable(robots.errors()));
    const QStringList all = {"{r1}/", "{r2}/", "{r3}/", "{r4}/", "{r5}/", "{r6}/"};
    for (int node = 0; node < RedisCluster::fMasters; ++node) {
        const Ended listed = run({"--connect", addressOf(cluster, node), "robots"});
        QCOMPARE(prefixesIn(listed.output), all);
        QVERIFY2(listed.status == 0, listed.errors);
        QVERIFY(cluster.node(node).command({"DBSIZE"}) != std::to_string(6 * 21));
    }
    const QString several = addressOf(cluster, 1) + "," + addressOf(cluster, 2);
    QCOMPARE(prefixesIn(run({"--connect", several, "robots"}).output), all);
    QCOMPARE(prefixesIn(run({"--connect", several, "--prefix", "{r4}/", "robots"}).output),
             QStringList{""});
    // Nobody takes its place then.
    cluster.node(RedisCluster::fMasters).kill();
    cluster.node(0).stop();
    const Ended part = run({"--connect", several, "--timeout", "300", "robots"});
    cluster.node(0).resume();
    QCOMPARE(part.status, 1);
    QVERIFY2(part.errors.contains("robots of these nodes may be missing: "), part.errors);
    QVERIFY2(part.errors.contains("robot at " + addressOf(cluster, 0).toUtf8()), part.errors);
}

void TestManyRobots::aRobotThatIsRefusedEndsAllOfItsProcess()
{
    RedisServer::Options options;
    options.users = {"fleet on >write ~r1/* ~r2/* +@all"};
    const RedisServer server(options);
    const PasswordFile password("write");
    SharingRobot robots(server, signedIn("fleet", password) +
                                    behind("r%/", {"--robots", "2", "--keys", "20"}));
    QVERIFY2(robots.isThere, qPrintable(robots.errors()));
    server.command({"ACL", "SETUSER", "fleet", "resetpass", ">other"});
    server.command({"CLIENT", "KILL", "USER", "fleet"});
    QCOMPARE(robots.waitForExit(), 1);
    QVERIFY2(robots.errors().contains("WRONGPASS"), qPrintable(robots.errors()));
}

void TestManyRobots::aSlowRobotTellsThatItIsThereBetweenItsTicks()
{
    const RedisServer server;
    const SharingRobot robot(server, behind("robot7/", {"--keys", "20", "--rate", "0.1"}));
    QVERIFY(robot.isThere);
    // A busy machine may let a tick pass meanwhile; the next one is 10 s away then.
    QVERIFY(isToldBetweenTicks(server) || isToldBetweenTicks(server));
}

void TestManyRobots::aRobotAloneOnItsServerWritesNoSign()
{
    const RedisServer server;
    const SharingRobot robot(server, {"--keys", "20"});
    QVERIFY(robot.isThere);
    QCOMPARE(server.command({"DBSIZE"}), std::string("20"));
    QCOMPARE(run(at(server, {"robots"})).output, QByteArray());
}

void TestManyRobots::eachUserHasItsRobotOnly()
{
    RedisServer::Options options;
    options.users = {"robot7 on >write-7 ~robot7/* -@all +mset +set +ping",
                     "panel7 on >look-7 %R~robot7/* -@all +mget +scan +ping +hello "
                     "+client|setname +client|tracking +client|caching"};
    const RedisServer server(options);
    server.command({"MSET", "robot70/Counter/Seconds", "-1", "Counter/Seconds", "-2"});
    const PasswordFile robots("write-7");
    const PasswordFile panels("look-7");
    const SharingRobot robot(server,
                             signedIn("robot7", robots) + behind("robot7/", {"--keys", "20"}));
    QVERIFY2(robot.isThere, qPrintable(const_cast<SharingRobot&>(robot).errors()));
    const QStringList asPanel = signedIn("panel7", panels);
    const QString file = path("own.csv");
    const Ended own =
        run(at(server, asPanel + behind("robot7/", {"record", "--all", "--for", "1s", "--period",
                                                    "20", "--output", file})));
    QCOMPARE(own.status, 0);
    const QByteArray table = bytesOf(file);
    QVERIFY(table.startsWith("time,"));
    QVERIFY2(table.left(table.indexOf('\n')).contains("Robot/Alive"), table);
    QVERIFY2(!table.contains("robot7/") && !table.contains(",-1") && !table.contains(",-2"), table);
    const Ended other = run(at(
        server, asPanel + behind("robot70/", {"record", "--for", "1s", "--period", "20", "--output",
                                              path("other.csv"), "Counter/Seconds"})));
    QCOMPARE(cellsOf(bytesOf(path("other.csv"))), (QStringList{"Counter/Seconds", ""}));
    QVERIFY2(other.status == 0, other.errors);
    SharingRobot wrong(server, signedIn("robot7", robots) + behind("robot70/", {}));
    QCOMPARE(wrong.waitForExit(), 1);
    QVERIFY2(wrong.errors().contains("NOPERM"), qPrintable(wrong.errors()));
    QCOMPARE(server.command({"GET", "robot70/Counter/Seconds"}), std::string("-1"));
}

void TestManyRobots::aReplayIsRuledBehindItsPrefix()
{
    writeBytes(path("a.csv"), "time,Number\r\n1700000000,1\r\n1700000001,2\r\n1700000002,3\r\n");
    const RedisServer server;
    const QStringList play = {"--replay", path("a.csv"), "--paused"};
    const SharingRobot seven(server, behind("robot7/", play));
    const SharingRobot eight(server, behind("robot8/", play));
    QVERIFY(seven.isThere && eight.isThere);
    QCOMPARE(run(at(server, behind("robot7/", {"replay-control", "step"}))).status, 0);
    TRY_VERIFY(server.command({"GET", "robot7/Number"}) == "2");
    QCOMPARE(server.command({"GET", "robot8/Number"}), std::string("1"));
    const QByteArray status =
        run(at(server, behind("robot7/", {"replay-control", "status"}))).output;
    QVERIFY2(status.startsWith("Replay/State\tstring\tpaused\n"), status);
    QCOMPARE(prefixesIn(run(at(server, {"robots"})).output), (QStringList{"robot7/", "robot8/"}));
}

// Its readers may write the key that rules it, whatever stands before it.
void TestManyRobots::aReplayOnAServerOfItsOwnMayHaveAnyPrefix()
{
    writeBytes(path("a.csv"), "time,Number\r\n1700000000,1\r\n1700000001,2\r\n");
    const QString odd = "r\"*'[7]#\\ö/";
    RobotProgram robot(behind(odd, {"--open", "--replay", path("a.csv"), "--paused"}));
    QVERIFY2(robot.startAndWait(), qPrintable(robot.errors()));
    const QStringList words = {"--connect", robot.address(), "--prefix", odd};
    const Ended step = run(words + QStringList{"replay-control", "step"});
    QVERIFY2(step.status == 0, step.errors);
    TRY_VERIFY(run(words + QStringList{"get", "Number"}).output == "Number\tint\t2\n");
    const Ended set = run(words + QStringList{"set", "Number", "5"});
    QVERIFY2(set.errors.contains("NOPERM"), set.errors);
}

REGISTER_TEST(TestManyRobots, QCoreApplication)
#include "tst_many_robots.moc"
