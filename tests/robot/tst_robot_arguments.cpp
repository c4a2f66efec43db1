// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "ticks.h"

#include <kit/usage_error.h>

#include <QtTest>

#include <algorithm>

Q_DECLARE_METATYPE(std::vector<std::string>)

class TestRobotArguments : public GuardedTest
{
    Q_OBJECT

private slots:
    void noArgumentsMeanAPrivateServerOnAFreePort();
    void everyOptionIsTaken();
    void eachOfManyRobotsHasItsNumberInItsPrefix();
    void aRecordingIsPlayedAsAsked();
    void valueMayFollowAnEqualsSign();
    void serverToConnectToHasADefaultPort();
    void serverToConnectToMayAskForALogin();
    void limitsAreInclusive();
    void senselessArgumentsAreRefusedWithTheOption_data();
    void senselessArgumentsAreRefusedWithTheOption();
    void helpAndVersionWinOverWhatFollows();
    void aShellIsToldOfTheOptions();
    void helpNamesEveryOption();
    void ticksFollowTheClockWithoutDrift();
    void lateTicksAreSkipped();
};

void TestRobotArguments::noArgumentsMeanAPrivateServerOnAFreePort()
{
    const RobotArguments arguments = parseArguments({});
    QVERIFY(arguments.action == RobotArguments::Action::Run);
    QVERIFY(!arguments.connection.isGiven);
    QCOMPARE(arguments.port, 0);
    QCOMPARE(arguments.rate, 50.0);
    QCOMPARE(arguments.keys, 200);
    QVERIFY(!arguments.open);
    QVERIFY(parseArguments({"--open"}).open);
}

void TestRobotArguments::everyOptionIsTaken()
{
    const RobotArguments arguments = parseArguments(
        {"--port", "6400", "--rate", "12.5", "--keys", "10000", "--seed", "4294967295"});
    QCOMPARE(arguments.port, 6400);
    QCOMPARE(arguments.rate, 12.5);
    QCOMPARE(arguments.keys, 10000);
    QCOMPARE(arguments.seed, 4294967295U);
}

void TestRobotArguments::eachOfManyRobotsHasItsNumberInItsPrefix()
{
    using Prefixes = std::vector<std::string>;
    QVERIFY(robotPrefixes(parseArguments({})) == Prefixes{""});
    QVERIFY(robotPrefixes(parseArguments({"--prefix", "r%/"})) == Prefixes{"r%/"});
    const RobotArguments arguments = parseArguments({"--robots", "3", "--prefix", "{robot%}/"});
    QVERIFY(robotPrefixes(arguments) == (Prefixes{"{robot1}/", "{robot2}/", "{robot3}/"}));
    QVERIFY(robotPrefixes(parseArguments({"--robots=1", "--prefix=%"})) == Prefixes{"1"});
}

void TestRobotArguments::aRecordingIsPlayedAsAsked()
{
    using namespace std::chrono_literals;
    QVERIFY(parseArguments({}).replay.path.empty());
    const ReplayArguments plain = parseArguments({"--replay", "a.csv"}).replay;
    QCOMPARE(plain.path, std::string("a.csv"));
    QVERIFY(plain.speed == 1 && !plain.loops && !plain.isPaused && !plain.from);
    const ReplayArguments all =
        parseArguments({"--replay=a.csv", "--speed=2.5", "--loop", "--paused", "--from=1.5h"})
            .replay;
    QVERIFY(all.speed == 2.5 && all.loops && all.isPaused);
    QVERIFY(all.from->kind == kit::ReplayCommand::Kind::JumpFrom && all.from->time == 90min);
    QVERIFY(parseArguments({"--replay=a", "--from=1700000000.5"}).replay.from->time ==
            1700000000500ms);
}

void TestRobotArguments::valueMayFollowAnEqualsSign()
{
    const RobotArguments arguments = parseArguments({"--keys=7", "--connect=robot:7000"});
    QCOMPARE(arguments.keys, 7);
    QVERIFY(arguments.connection.isGiven);
    QCOMPARE(arguments.connection.address.toText(), std::string("robot:7000"));
}

void TestRobotArguments::serverToConnectToHasADefaultPort()
{
    QCOMPARE(parseArguments({"--connect", "[::1]"}).connection.address.toText(),
             std::string("[::1]:6379"));
}

void TestRobotArguments::serverToConnectToMayAskForALogin()
{
    const RobotArguments arguments =
        parseArguments({"--connect", "robot", "--user", "walker", "--tls", "--ca", "/dev/null"});
    QCOMPARE(arguments.connection.options.user, std::string("walker"));
    QVERIFY(arguments.connection.options.tls);
}

void TestRobotArguments::limitsAreInclusive()
{
    QCOMPARE(parseArguments({"--keys", "1"}).keys, 1);
    QCOMPARE(parseArguments({"--keys", "100000"}).keys, 100000);
    QCOMPARE(parseArguments({"--rate", "0.1"}).rate, 0.1);
    QCOMPARE(parseArguments({"--rate", "1000"}).rate, 1000.0);
    QCOMPARE(parseArguments({"--seed", "0"}).seed, 0U);
}

void TestRobotArguments::senselessArgumentsAreRefusedWithTheOption_data()
{
    QTest::addColumn<std::vector<std::string>>("words");
    QTest::addColumn<QString>("part");
    const auto row = [](const char* name, const std::vector<std::string>& words, const char* part) {
        QTest::newRow(name) << words << part;
    };
    row("unknown option", {"--height", "3"}, "there is no option '--height' here");
    row("stray word", {"robot"}, "'robot' is no option");
    row("empty word", {""}, "'' is no option");
    row("value missing", {"--keys"}, "--keys needs a value");
    row("no number", {"--keys", "many"},
        "--keys must be a whole number from 1 to 100000, not 'many'");
    row("number with a tail", {"--keys", "12x"}, "'12x'");
    row("blank before the number", {"--keys", " 12"}, "' 12'");
    row("no keys", {"--keys", "0"}, "1 to 100000");
    row("too many keys", {"--keys", "100001"}, "1 to 100000");
    row("overflow", {"--keys", "99999999999999999999"}, "1 to 100000");
    row("empty value", {"--keys="}, "--keys needs a value");
    row("no rate", {"--rate", "0"}, "--rate must be a number from 0.1 to 1000, not '0'");
    row("rate that is no number", {"--rate", "nan"}, "'nan'");
    row("endless rate", {"--rate", "inf"}, "'inf'");
    row("decimal comma", {"--rate", "2,5"}, "'2,5'");
    row("negative seed", {"--seed", "-1"},
        "--seed must be a whole number from 0 to 4294967295, not '-1'");
    row("port 0", {"--port", "0"}, "--port must be a whole number from 1 to 65535");
    row("port too high", {"--port", "65536"}, "1 to 65535");
    row("no host", {"--connect", ":6379"}, "--connect: robot address ':6379': there is no host");
    row("no port behind the colon", {"--connect", "robot:"}, "the port must be a number");
    row("own port of a foreign server", {"--port", "7000", "--connect", "robot"}, "--connect");
    row("user of its own server", {"--user", "me"}, "--user and --tls are for");
    row("another server opened", {"--open", "--connect", "robot"}, "--open is for the robot's own");
    row("open with a password", {"--open", "--password-file", "/dev/null"}, "--password-file");
    row("no robots", {"--robots", "0", "--prefix", "r%/"}, "from 1 to 1000, not '0'");
    row("too many robots", {"--robots", "1001", "--prefix", "r%/"}, "from 1 to 1000");
    row("robots without a prefix", {"--robots", "2"}, "--robots needs one % in --prefix");
    row("no place for the number", {"--robots", "2", "--prefix", "r/"}, "needs one % in --prefix");
    row("two places for it", {"--robots", "2", "--prefix", "r%%/"}, "needs one % in --prefix");
    row("replay by many", {"--robots", "2", "--prefix", "%", "--replay", "a"}, "--replay plays");
    row("speed of no replay", {"--speed", "3"}, "are for --replay FILE");
    row("loop of no replay", {"--loop"}, "are for --replay FILE");
    row("start of no replay", {"--from", "3s"}, "are for --replay FILE");
    row("pause of no replay", {"--paused"}, "are for --replay FILE");
    row("rate of a replay", {"--replay", "a.csv", "--rate", "20"}, "are for the simulated robot");
    row("keys of a replay", {"--replay", "a.csv", "--keys", "20"}, "are for the simulated robot");
    row("seed of a replay", {"--replay", "a.csv", "--seed", "20"}, "are for the simulated robot");
    row("no speed", {"--replay", "a.csv", "--speed", "0"}, "--speed must be a number from 0.001");
    row("no time", {"--replay", "a.csv", "--from", "yesterday"}, "--from must be a time");
    row("encryption of its own server", {"--tls"}, "given with --connect");
}

void TestRobotArguments::senselessArgumentsAreRefusedWithTheOption()
{
    QFETCH(std::vector<std::string>, words);
    QFETCH(QString, part);
    try {
        parseArguments(words);
        QFAIL("accepted");
    } catch (const kit::UsageError& error) {
        QVERIFY2(QString(error.what()).contains(part), error.what());
        QVERIFY2(!QString(error.what()).contains('\n'), error.what());
    }
}

void TestRobotArguments::aShellIsToldOfTheOptions()
{
    const std::vector<std::string> names = completeRobotOptions({"--loop", "--"}).texts;
    QVERIFY(std::find(names.begin(), names.end(), "--replay") != names.end());
    QVERIFY(completeRobotOptions({"--replay", ""}).isFile);
    QVERIFY(completeRobotOptions({"--keys", ""}).texts.empty());
    QVERIFY(completeRobotOptions({"x"}).texts.empty());
}

void TestRobotArguments::helpAndVersionWinOverWhatFollows()
{
    QVERIFY(parseArguments({"--help", "--nonsense"}).action == RobotArguments::Action::Help);
    QVERIFY(parseArguments({"--keys", "3", "--version"}).action == RobotArguments::Action::Version);
}

void TestRobotArguments::helpNamesEveryOption()
{
    const QString help = QString::fromStdString(robotHelp());
    for (const char* option :
         {"--port", "--open", "--connect", "--rate", "--keys", "--seed", "--version", "--user",
          "--password-file", "--tls", "--ca", "--cert", "--key", "--timeout"})
        QVERIFY2(help.contains(option), option);
}

void TestRobotArguments::ticksFollowTheClockWithoutDrift()
{
    long long tick = 0;
    for (int i = 1; i <= 100000; ++i)
        tick = nextTick(tick, tickTime(tick, 50) + 0.003, 50);
    QCOMPARE(tick, 100000LL);
    QCOMPARE(tickTime(tick, 50), 2000.0);
}

void TestRobotArguments::lateTicksAreSkipped()
{
    QCOMPARE(nextTick(10, 0.205, 50), 11LL);
    QCOMPARE(nextTick(10, 0.225, 50), 11LL);
    QCOMPARE(nextTick(10, 0.265, 50), 13LL);
    QCOMPARE(nextTick(10, 3600, 50), 180000LL);
}

REGISTER_TEST(TestRobotArguments, QCoreApplication)
#include "tst_robot_arguments.moc"
