// SPDX-License-Identifier: MIT
#include "support/fake_robot.h"
#include "support/guarded_test.h"
#include "support/password_file.h"
#include "support/patience.h"
#include "support/register_test.h"
#include "support/tls_login.h"
#include "support/zo_program.h"

#include <QtTest>

#include <utility>

/// What `zo check` finds out about good and bad robots.
class TestZoCheck : public GuardedTest
{
    Q_OBJECT

private slots:
    void allIsWellWithAGoodRobot();
    void aNameIsLookedUp();
    void anUnknownNameEndsIt();
    void aRobotThatIsOffEndsIt();
    void aUserSignsIn();
    void aRefusedLoginEndsIt_data();
    void aRefusedLoginEndsIt();
    void tlsIsToldInFull();
    void tlsThatDoesNotFitEndsIt();
    void aMissingRightIsNamed();
    void someForbiddenKeysAreNoFailure();
    void aPanelsRightsSuffice();
    void aRobotThatHangsEndsIt();
    void aRobotThatHangsLaterEndsItThere();
    void aListOfKeysThatFailsEndsNothing_data();
    void aListOfKeysThatFailsEndsNothing();
    void aRobotThatIsNotReadyIsToldApart();
    void aRobotThatHangsUpWithAReasonIsQuoted();
    void whatIsNoRobotIsToldApart();
    void anOldServerSendsNoNotices_data();
    void anOldServerSendsNoNotices();
    void aBadFileIsNamed();
};

namespace {

constexpr int allSteps = 11;

/// What stands behind the name of a step, with the word before it: "ok: as alice". Empty when there
/// is no such line.
QString found(const Ended& ended, const QString& step)
{
    const QRegularExpression form("^(ok|failed|skipped) +" + step + " +(.*)$",
                                  QRegularExpression::MultilineOption);
    const QRegularExpressionMatch match = form.match(QString::fromUtf8(ended.output));
    return match.hasMatch() ? match.captured(1) + ": " + match.captured(2) : QString();
}

/// Whether it failed at `step`, as the last line says, because of `cause`.
bool endsAt(const Ended& ended, const QString& step, const QString& cause)
{
    const QString last = QString::fromUtf8(ended.output).trimmed().split('\n').last();
    return ended.status == 1 && ended.errors.isEmpty() && last.startsWith("failed ") &&
           found(ended, step).startsWith("failed: ") && last.contains(" " + step + " ") &&
           last.contains(cause);
}

#define VERIFY_ENDS_AT(ended, step, cause)                                                         \
    QVERIFY2(endsAt(ended, step, cause), (ended).output.constData())

Ended check(const RedisServer& server, const QStringList& options = {})
{
    return run(at(server, options + QStringList{"check"}));
}

/// Of a robot that lets one step wait in vain.
template <class Robot>
Ended checkBriefly(const Robot& robot, const QStringList& options = {})
{
    const QStringList connection = {"--connect", "127.0.0.1:" + QString::number(robot.port()),
                                    "--timeout", "1000"};
    return run(connection + options + QStringList{"check"});
}

RedisServer::Options withUser(const std::string& rights)
{
    RedisServer::Options options;
    options.users = {"alice on nopass " + rights};
    return options;
}

} // namespace

void TestZoCheck::allIsWellWithAGoodRobot()
{
    const RedisServer server;
    server.command({"MSET", "Arm/A", "1", "Arm/B", "2", "Arm/C", "3"});
    server.command({"HSET", "Arm/Hash", "field", "1"});
    const Ended ended = check(server);
    QCOMPARE(ended.errors, QByteArray());
    QCOMPARE(ended.status, 0);
    QCOMPARE(linesIn(ended.output), allSteps);
    QCOMPARE(found(ended, "look-up"), QString("ok: 127.0.0.1 is an address"));
    QCOMPARE(found(ended, "connection"), "ok: " + addressOf(server) + " answers");
    QCOMPARE(found(ended, "TLS"), QString("skipped: not asked for"));
    QVERIFY(found(ended, "answer").startsWith("ok: "));
    QVERIFY(found(ended, "readiness").startsWith("ok: "));
    QCOMPARE(found(ended, "login"), QString("ok: none needed"));
    QCOMPARE(found(ended, "rights"), QString("ok: SCAN is allowed; MGET is allowed"));
    QVERIFY2(QRegularExpression("^ok: \\w+ \\d+\\.\\d+\\.\\d+$")
                 .match(found(ended, "server"))
                 .hasMatch(),
             ended.output.constData());
    QVERIFY(found(ended, "keys").startsWith("ok: 3 keys, listed in "));
    QVERIFY(QRegularExpression("^ok: [0-9.]+ ms in the median of 9, [0-9.]+ ms to [0-9.]+ ms$")
                .match(found(ended, "round trip"))
                .hasMatch());
    QVERIFY(found(ended, "notices").startsWith("ok: the server tells what was written"));
    QCOMPARE(server.clients(), 0);
}

void TestZoCheck::aNameIsLookedUp()
{
    const RedisServer server;
    const Ended ended = run({"--connect", "localhost:" + QString::number(server.port()),
                             "--timeout", "20000", "check"});
    QCOMPARE(ended.status, 0);
    QVERIFY(found(ended, "look-up").startsWith("ok: localhost is "));
    QVERIFY(found(ended, "look-up").contains("127.0.0.1"));
    QVERIFY(found(ended, "connection").startsWith("ok: " + addressOf(server) + " answers"));
}

void TestZoCheck::anUnknownNameEndsIt()
{
    const Ended ended = run({"--connect", "nowhere.invalid", "--timeout", "20000", "check"});
    VERIFY_ENDS_AT(ended, "look-up", "unknown host");
    QVERIFY(ended.output.contains("(check the name"));
    QCOMPARE(linesIn(ended.output), 1);
}

void TestZoCheck::aRobotThatIsOffEndsIt()
{
    const DeafPort port;
    const QString address = "127.0.0.1:" + QString::number(port.port());
    const Ended ended = run({"--connect", address, "--timeout", "20000", "check"});
    VERIFY_ENDS_AT(ended, "connection", address + ": Connection refused (is the robot on");
    QCOMPARE(linesIn(ended.output), 2);
}

void TestZoCheck::aUserSignsIn()
{
    RedisServer::Options options;
    options.users = {"alice on >open-sesame ~* +@all"};
    options.defaultPassword = "open-default";
    const RedisServer server(options);
    const PasswordFile alices("open-sesame");
    const Ended alice = check(server, {"--user", "alice", "--password-file", alices.fileName()});
    QCOMPARE(alice.status, 0);
    QCOMPARE(found(alice, "login"), QString("ok: as alice"));
    const PasswordFile defaults("open-default");
    const Ended everyone = check(server, {"--password-file", defaults.fileName()});
    QCOMPARE(everyone.status, 0);
    QCOMPARE(found(everyone, "login"), QString("ok: as the default user"));
}

void TestZoCheck::aRefusedLoginEndsIt_data()
{
    QTest::addColumn<QByteArray>("password");
    QTest::addColumn<QString>("cause");
    QTest::newRow("wrong password") << QByteArray("wrong-word") << "WRONGPASS";
    QTest::newRow("no password") << QByteArray() << "NOAUTH";
}

void TestZoCheck::aRefusedLoginEndsIt()
{
    QFETCH(QByteArray, password);
    QFETCH(QString, cause);
    RedisServer::Options options;
    options.defaultPassword = "open-default";
    const RedisServer server(options);
    const PasswordFile file(password);
    const Ended ended =
        password.isEmpty() ? check(server) : check(server, {"--password-file", file.fileName()});
    VERIFY_ENDS_AT(ended, "login", cause);
    QVERIFY(ended.output.contains("(--user and --password-file"));
    QVERIFY(!ended.output.contains("wrong-word"));
    QCOMPARE(linesIn(ended.output), 6);
}

void TestZoCheck::tlsIsToldInFull()
{
    const TlsLogin login;
    const Ended ended = check(login.server, login.words());
    QCOMPARE(ended.status, 0);
    QCOMPARE(linesIn(ended.output), allSteps);
    const QString told = found(ended, "TLS");
    const QRegularExpression form(
        "^ok: TLSv1\\.3, certificate of CN=server, valid until (\\d{4}-\\d\\d-\\d\\d)$");
    const QDate end = QDate::fromString(form.match(told).captured(1), Qt::ISODate);
    const qint64 days = QDate::currentDate().daysTo(end);
    QVERIFY2(days >= 1 && days <= 3, qPrintable(told));
}

void TestZoCheck::tlsThatDoesNotFitEndsIt()
{
    const TlsLogin login;
    const Ended untrusted = check(login.server, {"--tls"});
    VERIFY_ENDS_AT(untrusted, "TLS", "the server's certificate is not trusted");
    QVERIFY(untrusted.output.contains("--ca names the authority"));
    QCOMPARE(linesIn(untrusted.output), 3);
    VERIFY_ENDS_AT(checkBriefly(login.server), "answer", "does it want --tls?");
    const RedisServer plain;
    VERIFY_ENDS_AT(checkBriefly(plain, login.encryption()), "TLS", "does the server speak TLS");
}

void TestZoCheck::aMissingRightIsNamed()
{
    const RedisServer reader(withUser("~* +@all -mget"));
    const Ended noReading = check(reader, {"--user", "alice"});
    QCOMPARE(noReading.status, 1);
    QVERIFY2(
        found(noReading, "rights").startsWith("failed: SCAN is allowed; MGET is refused: NOPERM "),
        noReading.output.constData());
    QVERIFY(found(noReading, "rights").contains("(the robot's access list must allow"));
    QCOMPARE(linesIn(noReading.output), allSteps); // the other steps do not need it
    QVERIFY(found(noReading, "keys").startsWith("ok: "));

    const RedisServer lister(withUser("~* +@all -scan"));
    const Ended noListing = check(lister, {"--user", "alice"});
    QCOMPARE(noListing.status, 1);
    QVERIFY2(found(noListing, "rights").startsWith("failed: SCAN is refused: NOPERM "),
             noListing.output.constData());
    QCOMPARE(found(noListing, "keys"),
             QString("skipped: they cannot be listed; those that are named can be read"));
    QCOMPARE(linesIn(noListing.output), allSteps);
}

void TestZoCheck::someForbiddenKeysAreNoFailure()
{
    const RedisServer server(withUser("~Arm/* +@all"));
    Ended ended = check(server, {"--user", "alice"});
    QCOMPARE(ended.status, 0);
    QCOMPARE(found(ended, "rights"),
             QString("ok: SCAN is allowed; MGET is allowed, but not for every key"));
    server.command({"SET", "Leg/A", "1"});
    ended = check(server, {"--user", "alice"});
    QCOMPARE(ended.status, 1);
    QVERIFY2(found(ended, "rights").startsWith("failed: SCAN is allowed; MGET is refused: NOPERM "),
             ended.output.constData());
    server.command({"MSET", "Arm/A", "1", "Arm/B", "2"});
    ended = check(server, {"--user", "alice"});
    QCOMPARE(ended.status, 0);
    QCOMPARE(found(ended, "rights"),
             QString("ok: SCAN is allowed; MGET is allowed for 2 of the first 3 keys"));
}

void TestZoCheck::aPanelsRightsSuffice()
{
    const RedisServer server(withUser("%R~* -@all +mget +scan +ping"));
    const Ended ended = check(server, {"--user", "alice"});
    QVERIFY2(ended.status == 0, ended.output.constData());
    QVERIFY2(found(ended, "notices").startsWith("skipped: CLIENT TRACKING is refused: NOPERM "),
             ended.output.constData());
    const RedisServer always(withUser("%R~* -@all +mget +scan +ping +client|tracking"));
    QVERIFY(found(check(always, {"--user", "alice"}), "notices")
                .startsWith("skipped: CLIENT CACHING is refused: NOPERM "));
    const RedisServer telling(
        withUser("%R~* -@all +mget +scan +ping +client|tracking +client|caching"));
    QVERIFY(found(check(telling, {"--user", "alice"}), "notices").startsWith("ok: "));
}

void TestZoCheck::aRobotThatHangsEndsIt()
{
    RedisServer server;
    server.stop();
    const Ended ended = checkBriefly(server);
    VERIFY_ENDS_AT(ended, "answer", "no reply to PING within 1000 ms");
    server.resume();
}

void TestZoCheck::aRobotThatHangsLaterEndsItThere()
{
    const FakeRobot robot([](FakeConnection& connection) {
        connection.greet();
        connection.waitForEnd();
    });
    VERIFY_ENDS_AT(checkBriefly(robot), "rights", "no reply to SCAN within 1000 ms");
}

void TestZoCheck::aListOfKeysThatFailsEndsNothing_data()
{
    QTest::addColumn<QByteArray>("reply"); // to the second SCAN; empty: none comes
    QTest::addColumn<QString>("cause");
    QTest::newRow("silence") << QByteArray() << "no reply to SCAN within 1000 ms";
    QTest::newRow("refusal") << QByteArray("-NOPERM not any more\r\n") << "refuses SCAN: NOPERM";
    QTest::newRow("nonsense") << QByteArray("*3\r\n") << "malformed reply to SCAN";
}

void TestZoCheck::aListOfKeysThatFailsEndsNothing()
{
    QFETCH(QByteArray, reply);
    QFETCH(QString, cause);
    const FakeRobot robot([&](FakeConnection& connection) {
        connection.greet();
        bool isFirst = true;
        for (;;) {
            const std::string word = connection.readCommand().at(0);
            if (word == "SCAN" && !std::exchange(isFirst, false))
                connection.send(reply.toStdString());
            else if (word == "SCAN")
                connection.send("*2\r\n$1\r\n0\r\n*0\r\n");
            else if (word == "MGET")
                connection.send("*1\r\n$-1\r\n");
            else
                connection.send(word == "PING" ? "+PONG\r\n" : "-ERR no such command\r\n");
        }
    });
    const Ended ended = checkBriefly(robot);
    QCOMPARE(ended.status, 1);
    QVERIFY2(found(ended, "keys").startsWith("failed: ") && found(ended, "keys").contains(cause) &&
                 found(ended, "keys").endsWith("; those that are named can be read"),
             ended.output.constData());
    QVERIFY2(found(ended, "round trip").startsWith("ok: "), ended.output.constData());
    QCOMPARE(linesIn(ended.output), allSteps);
}

void TestZoCheck::aRobotThatIsNotReadyIsToldApart()
{
    const FakeRobot robot([](FakeConnection& connection) {
        connection.send("-LOADING the dataset\r\n-LOADING the dataset\r\n");
        connection.waitForEnd();
    });
    VERIFY_ENDS_AT(checkBriefly(robot), "readiness", "not ready: LOADING the dataset (try again");
}

void TestZoCheck::aRobotThatHangsUpWithAReasonIsQuoted()
{
    const FakeRobot robot([](FakeConnection& connection) {
        connection.readCommand();
        connection.readCommand(); // with anything unread its words would be lost
        connection.send("-ERR max number of clients reached\r\n");
    });
    VERIFY_ENDS_AT(checkBriefly(robot), "readiness", "max number of clients reached");
}

void TestZoCheck::whatIsNoRobotIsToldApart()
{
    const FakeRobot robot([](FakeConnection& connection) {
        connection.send("HTTP/1.1 400 Bad\x1b[2J Request\r\n\r\n");
        connection.waitForEnd();
    });
    const Ended ended = checkBriefly(robot);
    VERIFY_ENDS_AT(ended, "answer", "malformed reply");
    QVERIFY(ended.output.contains("is it a robot's memory"));
    QVERIFY(!ended.output.contains('\x1b'));
    QCOMPARE(linesIn(ended.output), 4);
}

void TestZoCheck::anOldServerSendsNoNotices_data()
{
    QTest::addColumn<QByteArray>("hello");
    QTest::addColumn<QString>("server");
    QTest::addColumn<QString>("notices");
    const QString otherwise = "; what is followed is read as a whole";
    QTest::newRow("before notices in place")
        << QByteArray("%2\r\n$6\r\nserver\r\n$5\r\nredis\r\n"
                      "$7\r\nversion\r\n$6\r\n6.0.16\r\n")
        << "ok: redis 6.0.16"
        << "skipped: the server is too old for that" + otherwise;
    QTest::newRow("before greetings") << QByteArray("-ERR unknown command `HELLO`\r\n")
                                      << "skipped: it does not tell: ERR unknown command `HELLO`"
                                      << "skipped: HELLO is refused" + otherwise;
}

void TestZoCheck::anOldServerSendsNoNotices()
{
    QFETCH(QByteArray, hello);
    QFETCH(QString, server);
    QFETCH(QString, notices);
    const FakeRobot robot([&](FakeConnection& connection) {
        connection.greet();
        for (;;) {
            const auto command = connection.readCommand();
            const std::string& word = command.at(0);
            if (word == "SCAN" && command.size() > 4)
                connection.send("-ERR syntax error\r\n");
            else if (word == "SCAN")
                connection.send("*2\r\n$1\r\n0\r\n*0\r\n");
            else if (word == "MGET")
                connection.send("*1\r\n$-1\r\n");
            else
                connection.send(word == "HELLO" ? hello.toStdString() : "+PONG\r\n");
        }
    });
    const Ended ended = checkBriefly(robot);
    QVERIFY2(found(ended, "rights").startsWith("ok: SCAN is allowed"), ended.output.constData());
    QCOMPARE(found(ended, "server"), server);
    QCOMPARE(found(ended, "notices"), notices);
}

void TestZoCheck::aBadFileIsNamed()
{
    const RedisServer server;
    const PasswordFile noAuthority("no certificate");
    const Ended ended = check(server, {"--tls", "--ca", noAuthority.fileName()});
    QCOMPARE(ended.status, 1);
    QCOMPARE(ended.output, QByteArray());
    QVERIFY2(ended.errors.contains(noAuthority.fileName().toUtf8()), ended.errors.constData());
    QCOMPARE(linesIn(ended.errors), 1);
}

REGISTER_TEST(TestZoCheck, QCoreApplication)
#include "tst_zo_check.moc"
