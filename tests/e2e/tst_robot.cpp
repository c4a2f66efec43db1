// SPDX-License-Identifier: MIT
#include "robot_keys.h"
#include "robot_program.h"
#include "support/guarded_test.h"
#include "support/password_file.h"
#include "support/patience.h"
#include "support/redis_server.h"
#include "support/register_test.h"
#include "support/tls_login.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <csignal>
#include <set>
#include <sys/stat.h>

namespace {

ZoValue valuesOf(ZoMemoryProxy& memory, const std::vector<std::string>& keys)
{
    return memory.getListData(requestFor(keys));
}

std::int64_t countOf(ZoMemoryProxy& memory, const std::string& key)
{
    return std::get<std::int64_t>(valuesOf(memory, {key})[0].data());
}

QStringList addressOf(const RedisServer& server)
{
    return {"--connect", QString("127.0.0.1:%1").arg(server.port())};
}

} // namespace

/// The simulated robot as its users start it.
class TestRobot : public GuardedTest
{
    Q_OBJECT

private slots:
    void saysWhereItListensAndHasItsKeysThere();
    void valuesFollowTheClock();
    void everyValueIsThatOfItsSeedAndTime();
    void tenThousandKeysAreAllThere();
    void listensOnTheGivenPort();
    void aPortInUseIsNamedWithTheWayOut();
    void aMissingServerProgramIsNamedWithTheWayOut();
    void aWrongCommandLineEndsWithOneLine();
    void helpAndVersionGoToStandardOutput();
    void signalsEndItAndItsServer_data();
    void signalsEndItAndItsServer();
    void itsServerEndsWithItWhenItIsKilled();
    void theEndOfItsServerEndsItWithAMessage();
    void leavesNoFileBehindAndReadsNone();
    void itsPasswordIsMadeUpAndForItsUserAlone();
    void isOpenToEverybodyOnlyWhenAskedToBe();
    void aPasswordFileKeepsStrangersOut();
    void publishesToAGivenServer();
    void signsInAtAGivenServer();
    void aLostServerIsToldOnceAndAwaited();
    void aServerThatRefusesItEndsIt_data();
    void aServerThatRefusesItEndsIt();
    void noServerAtTheGivenAddressIsAnError();
};

void TestRobot::saysWhereItListensAndHasItsKeysThere()
{
    RobotProgram robot;
    QVERIFY(robot.startAndWait());
    QVERIFY(robot.address().startsWith("127.0.0.1:"));
    ZoMemoryProxy memory = robot.memory();
    const std::vector<std::string> names = memory.getDataListName();
    QCOMPARE(names.size(), std::size_t{200});
    const ZoValue values = valuesOf(memory, names);
    std::set<int> types;
    for (int i = 0; i < values.getSize(); ++i)
        types.insert(values[i].getType());
    QCOMPARE(types.size(), std::size_t{6});
    QCOMPARE(robot.errors(), QString());
}

void TestRobot::valuesFollowTheClock()
{
    RobotProgram robot({"--rate", "4"});
    QElapsedTimer clock;
    clock.start();
    QVERIFY(robot.startAndWait());
    ZoMemoryProxy memory = robot.memory();
    TRY_VERIFY(countOf(memory, "Counter/Seconds") >= 2);
    QVERIFY(clock.elapsed() >= 2000);
    // 4 ticks a second, 500 counts a second.
    QCOMPARE(countOf(memory, "Counter/ControlTicks") % 125, std::int64_t{0});
}

void TestRobot::everyValueIsThatOfItsSeedAndTime()
{
    RobotProgram robot({"--rate", "4", "--seed", "7"});
    QVERIFY(robot.startAndWait());
    std::vector<std::string> names;
    const std::vector<RobotKey> keys = robotKeys(defaultRobotKeys, 7);
    names.reserve(keys.size());
    for (const RobotKey& key : keys)
        names.push_back(key.name);
    ZoMemoryProxy memory = robot.memory();
    TRY_VERIFY(countOf(memory, "Counter/ControlTicks") > 0);
    const ZoValue values = valuesOf(memory, names);
    const auto ticks = std::find(names.begin(), names.end(), "Counter/ControlTicks");
    const ZoValue count = values[static_cast<int>(ticks - names.begin())];
    const double time = static_cast<double>(std::get<std::int64_t>(count.data())) / 500;
    QVERIFY(time > 0);
    for (int i = 0; i < values.getSize(); ++i) {
        const RobotKey& key = keys[static_cast<std::size_t>(i)];
        QVERIFY2(values[i] == key.value(time), key.name.c_str());
    }
}

void TestRobot::tenThousandKeysAreAllThere()
{
    RobotProgram robot({"--keys", "10000", "--rate", "5"});
    QVERIFY(robot.startAndWait());
    ZoMemoryProxy memory = robot.memory();
    QCOMPARE(memory.getDataListName().size(), std::size_t{10000});
    QCOMPARE(valuesOf(memory, {"Skin/01400/Pressure"})[0].getType(), int{ZoValue::Float});
}

void TestRobot::listensOnTheGivenPort()
{
    RedisServer other;
    const int port = other.port(); // a free one, as soon as this server has gone
    other.kill();
    RobotProgram robot({"--port", QString::number(port)});
    QVERIFY(robot.startAndWait());
    QCOMPARE(robot.address(), QString("127.0.0.1:%1").arg(port));
}

void TestRobot::aPortInUseIsNamedWithTheWayOut()
{
    const RedisServer other;
    const QString port = QString::number(other.port());
    RobotProgram robot({"--port", port});
    robot.start();
    QCOMPARE(robot.waitForExit(), 1);
    QVERIFY2(robot.errors().contains("cannot listen on 127.0.0.1:" + port),
             qPrintable(robot.errors()));
    QVERIFY(robot.errors().contains("--connect 127.0.0.1:" + port));
}

void TestRobot::aMissingServerProgramIsNamedWithTheWayOut()
{
    RobotProgram robot;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("PATH", "/nonexistent");
    robot.setProcessEnvironment(environment);
    robot.start();
    QCOMPARE(robot.waitForExit(), 1);
    QVERIFY2(robot.errors().contains("redis-server is missing"), qPrintable(robot.errors()));
    QVERIFY(robot.errors().contains("apt-get install redis-server"));
}

void TestRobot::aWrongCommandLineEndsWithOneLine()
{
    RobotProgram robot({"--rate", "fast"});
    robot.start();
    QCOMPARE(robot.waitForExit(), 2);
    QCOMPARE(robot.errors(),
             QString("tarvek-robot: --rate must be a number from 0.1 to 1000, not 'fast' "
                     "(see tarvek-robot --help)\n"));
}

void TestRobot::helpAndVersionGoToStandardOutput()
{
    for (const char* option : {"--help", "--version"}) {
        RobotProgram robot({option});
        robot.start();
        QCOMPARE(robot.waitForExit(), 0);
        QVERIFY(robot.readAllStandardOutput().contains("tarvek-robot"));
        QCOMPARE(robot.errors(), QString());
    }
}

void TestRobot::signalsEndItAndItsServer_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("Ctrl-C") << SIGINT;
    QTest::newRow("closed terminal") << SIGHUP;
}

void TestRobot::signalsEndItAndItsServer()
{
    QFETCH(int, number);
    RobotProgram robot;
    QVERIFY(robot.startAndWait());
    const QList<qint64> servers = robot.children();
    QCOMPARE(servers.size(), 1);
    robot.signal(number);
    QCOMPARE(robot.waitForExit(), 0);
    QVERIFY(hasEnded(servers.first()));
    QCOMPARE(robot.errors(), QString());
}

void TestRobot::itsServerEndsWithItWhenItIsKilled()
{
    RobotProgram robot;
    QVERIFY(robot.startAndWait());
    const QList<qint64> servers = robot.children();
    QCOMPARE(servers.size(), 1);
    robot.signal(SIGKILL);
    QCOMPARE(robot.waitForExit(), -1);
    TRY_VERIFY(hasEnded(servers.first()));
}

void TestRobot::theEndOfItsServerEndsItWithAMessage()
{
    RobotProgram robot;
    QVERIFY(robot.startAndWait());
    ::kill(static_cast<pid_t>(robot.children().first()), SIGKILL);
    QCOMPARE(robot.waitForExit(), 1);
    QVERIFY2(robot.errors().contains("the robot's own server has ended"),
             qPrintable(robot.errors()));
}

void TestRobot::leavesNoFileBehindAndReadsNone()
{
    const QTemporaryDir folder;
    RobotProgram robot;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("TMPDIR", folder.path());
    robot.setProcessEnvironment(environment);
    robot.setWorkingDirectory(folder.path());
    QFile stored(folder.filePath("dump.rdb"));
    QVERIFY(stored.open(QIODevice::WriteOnly));
    stored.write("no stored data: a server that reads this does not start");
    stored.close();
    QVERIFY(robot.startAndWait());
    const QDir::Filters everything = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
    const QString ownFolder = QFileInfo(robot.passwordFile()).dir().dirName();
    QCOMPARE(QDir(folder.path()).entryList(everything), (QStringList{"dump.rdb", ownFolder}));
    robot.signal(SIGTERM);
    QCOMPARE(robot.waitForExit(), 0);
    QCOMPARE(QDir(folder.path()).entryList(everything), QStringList{"dump.rdb"});
}

void TestRobot::itsPasswordIsMadeUpAndForItsUserAlone()
{
    RobotProgram robot({"--keys", "20"});
    QVERIFY(robot.startAndWait());
    const auto modeOf = [](const QString& path) {
        struct stat status = {};
        return ::stat(path.toLocal8Bit().constData(), &status) == 0 ? status.st_mode & 0777U : 0;
    };
    QCOMPARE(modeOf(robot.passwordFile()), 0600U);
    QCOMPARE(modeOf(QFileInfo(robot.passwordFile()).path()), 0700U);

    QVERIFY(robot.password().size() >= 32);
    QCOMPARE(robot.memory().getDataListName().size(), std::size_t{20});
    QVERIFY(contains(errorOf([&] { robot.memory(""); }), "NOAUTH"));
    QVERIFY(contains(errorOf([&] { robot.memory("guess"); }), "WRONGPASS"));
    QVERIFY(contains(errorOf([&] { robot.memory().setData("a", 1); }), "NOPERM"));
    RobotProgram other({"--keys", "20"});
    QVERIFY(other.startAndWait());
    QVERIFY(robot.password() != other.password());
    QCOMPARE(robot.errors(), QString());
}

void TestRobot::isOpenToEverybodyOnlyWhenAskedToBe()
{
    RobotProgram robot({"--keys", "20", "--open"});
    QVERIFY(robot.startAndWait());
    QVERIFY2(!robot.output().contains("password"), robot.output().constData());
    QCOMPARE(robot.memory("").getDataListName().size(), std::size_t{20});
    QVERIFY(contains(errorOf([&] { robot.memory("").setData("a", 1); }), "NOPERM"));
}

void TestRobot::aPasswordFileKeepsStrangersOut()
{
    const PasswordFile file("look-only");
    RobotProgram robot({"--keys", "20", "--password-file", file.fileName()});
    QVERIFY(robot.startAndWait());
    QVERIFY2(!robot.output().contains("password"), robot.output().constData());
    QVERIFY(contains(errorOf([&] { robot.memory(""); }), "NOAUTH"));
    QCOMPARE(robot.memory("look-only").getDataListName().size(), std::size_t{20});
    QCOMPARE(robot.errors(), QString());
}

void TestRobot::publishesToAGivenServer()
{
    const RedisServer server;
    RobotProgram robot(addressOf(server) + QStringList{"--keys", "20"});
    robot.start();
    QCOMPARE(robot.waitForLine("publishing to "), QString("127.0.0.1:%1").arg(server.port()));
    QCOMPARE(server.command({"DBSIZE"}), std::string("20"));
    QVERIFY(robot.children().isEmpty());
    robot.signal(SIGTERM);
    QCOMPARE(robot.waitForExit(), 0);
    QCOMPARE(server.command({"DBSIZE"}), std::string("20"));
}

void TestRobot::signsInAtAGivenServer()
{
    const TlsLogin login;
    const QStringList address = addressOf(login.server);
    RobotProgram robot(address + QStringList{"--keys", "20"} + login.words());
    robot.start();
    QVERIFY(!robot.waitForLine("publishing to ").isEmpty());
    QCOMPARE(login.server.command({"DBSIZE"}), std::string("20"));
    QVERIFY(contains(login.server.command({"CLIENT", "LIST"}), "user=alice"));
    QCOMPARE(robot.errors(), QString());

    RobotProgram stranger(address + login.encryption());
    stranger.start();
    QCOMPARE(stranger.waitForExit(), 1);
    QVERIFY2(stranger.errors().contains("NOAUTH"), qPrintable(stranger.errors()));
}

void TestRobot::aLostServerIsToldOnceAndAwaited()
{
    RedisServer server;
    // So fast that many ticks fall into the outage.
    RobotProgram robot(addressOf(server) + QStringList{"--rate", "1000"});
    robot.start();
    QVERIFY(!robot.waitForLine("publishing to ").isEmpty());
    server.kill();
    QVERIFY(robot.waitForError("Trying again."));
    server.restart();
    QVERIFY(robot.waitForError("publishing again."));
    TRY_COMPARE(server.command({"DBSIZE"}), std::string("200"));
    QCOMPARE(robot.errors().count('\n'), 2);
    QVERIFY(robot.errors().contains(QString::number(server.port())));
}

void TestRobot::aServerThatRefusesItEndsIt_data()
{
    QTest::addColumn<bool>("byPassword");
    QTest::addColumn<QString>("reason");
    QTest::newRow("another password") << true << "user or password refused: WRONGPASS";
    QTest::newRow("another certificate") << false << "certificate";
}

void TestRobot::aServerThatRefusesItEndsIt()
{
    QFETCH(bool, byPassword);
    QFETCH(QString, reason);
    TlsLogin login;
    RobotProgram robot(addressOf(login.server) + login.words());
    robot.start();
    QVERIFY(!robot.waitForLine("publishing to ").isEmpty());
    if (byPassword) {
        login.server.command({"ACL", "SETUSER", "alice", "resetpass", ">other"});
        login.server.command({"CLIENT", "KILL", "USER", "alice"});
    } else {
        login.server.restartAsAnother();
    }
    QCOMPARE(robot.waitForExit(), 1);
    const QString last = robot.errors().trimmed().section('\n', -1);
    QVERIFY2(last.startsWith("tarvek-robot: robot at 127.0.0.1:"), qPrintable(robot.errors()));
    QVERIFY2(last.contains(reason), qPrintable(robot.errors()));
}

void TestRobot::noServerAtTheGivenAddressIsAnError()
{
    RedisServer server;
    const QStringList arguments = addressOf(server);
    server.kill();
    RobotProgram robot(arguments);
    robot.start();
    QCOMPARE(robot.waitForExit(), 1);
    QVERIFY2(robot.errors().contains(arguments.last()), qPrintable(robot.errors()));
}

REGISTER_TEST(TestRobot, QCoreApplication)
#include "tst_robot.moc"
