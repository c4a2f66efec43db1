// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/password_file.h"
#include "support/patience.h"
#include "support/register_test.h"
#include "support/tls_login.h"
#include "support/zo_program.h"

#include <QtTest>

#include <csignal>
#include <functional>

/// The program `zo`, run as people and scripts run it, with real servers.
class TestZoCli : public GuardedTest
{
    Q_OBJECT

private slots:
    void listPrintsTheKeysSortedByBytes();
    void getPrintsEveryTypeInTheOrderAsked();
    void aLargeValueIsInvalidAlone();
    void aSocketLeadsToTheRobot();
    void aRecordIsAlwaysOneLine();
    void setStoresTextAsItStands();
    void watchPrintsEachPollAtItsTime();
    void watchTellsOnceOfALostRobotAndGoesOnByItself_data();
    void watchTellsOnceOfALostRobotAndGoesOnByItself();
    void watchEndsWhenTheRobotRefusesIt_data();
    void watchEndsWhenTheRobotRefusesIt();
    void stopSignalsEndAWatchWell_data();
    void stopSignalsEndAWatchWell();
    void aSignalEndsAWatchThatWaitsForAStoppedRobot();
    void aClosedOutputEndsItQuietly_data();
    void aClosedOutputEndsItQuietly();
    void anOutputThatCannotBeWrittenIsAFailure();
    void anUnreachableRobotIsAFailure();
    void aPasswordOpensTheRobotAndIsNeverShown();
    void aPasswordMayComeThroughAPipe();
    void aPasswordThatOthersMayReadIsWarnedOfOnce();
    void tlsChecksTheRobotsCertificate();
    void wrongUseIsOneLineAndStatusTwo_data();
    void wrongUseIsOneLineAndStatusTwo();
    void helpAndVersionArePrinted();
};

namespace {

Ended runInShell(const QString& script)
{
    Program shell("bash", {"-c", script});
    shell.start();
    return endOf(shell);
}

} // namespace

void TestZoCli::listPrintsTheKeysSortedByBytes()
{
    const RedisServer server;
    for (const char* key : {"b", "Arm/Angle", "a", "\xc3\xa9", "Arm/\x80", "Leg/Angle", "B"})
        server.command({"SET", key, "1"});
    server.command({"HSET", "Arm/Hash", "field", "1"});
    const Ended all = run(at(server, {"list"}));
    QCOMPARE(all.status, 0);
    QCOMPARE(all.output, QByteArray("Arm/Angle\nArm/\x80\nB\nLeg/Angle\na\nb\n\xc3\xa9\n"));
    QCOMPARE(all.errors, QByteArray());
    QCOMPARE(run(at(server, {"list", "Angle"})).output, QByteArray("Arm/Angle\nLeg/Angle\n"));
    const Ended none = run(at(server, {"list", "angle"}));
    QCOMPARE(none.status, 0);
    QCOMPARE(none.output, QByteArray());
}

void TestZoCli::getPrintsEveryTypeInTheOrderAsked()
{
    const RedisServer server;
    const std::vector<std::pair<const char*, const char*>> texts = {
        {"int", "3"},
        {"large", "9223372036854775808"},
        {"float", "0.12345678901234566"},
        {"whole float", "3.0"},
        {"bool", "true"},
        {"string", "\"say \\\"hi\\\"\\nand go\""},
        {"array", "[1,\"a\",0.5,null]"},
        {"nested", "[[1,[2]],{\"a\": 1}]"},
        {"object", "{\"a\":1}"},
        {"plain", "plain text"},
        {"nan", "NaN"},
        {"infinite", "-Infinity"},
        {"null", "null"},
        {"empty", ""},
    };
    QStringList words = at(server, {"get"});
    for (const auto& [key, text] : texts) {
        server.command({"SET", key, text});
        words += key;
    }
    server.command({"HSET", "hash", "field", "1"});
    const Ended ended = run(words + QStringList{"hash", "missing", "int"});
    QCOMPARE(ended.errors, QByteArray());
    QCOMPARE(ended.status, 0);
    QCOMPARE(ended.output, QByteArray("int\tint\t3\n"
                                      "large\tfloat\t9223372036854775808\n"
                                      "float\tfloat\t0.12345678901234566\n"
                                      "whole float\tfloat\t3\n"
                                      "bool\tbool\ttrue\n"
                                      "string\tstring\tsay \"hi\"\\nand go\n"
                                      "array\tarray\t[1,\"a\",0.5,null]\n"
                                      "nested\tarray\t[[1,[2]],\"{\\\\\"a\\\\\": 1}\"]\n"
                                      "object\tstring\t{\"a\":1}\n"
                                      "plain\tstring\tplain text\n"
                                      "nan\tfloat\tnan\n"
                                      "infinite\tfloat\t-inf\n"
                                      "null\tinvalid\t\n"
                                      "empty\tstring\t\n"
                                      "hash\tinvalid\t\n"
                                      "missing\tinvalid\t\n"
                                      "int\tint\t3\n"));
}

void TestZoCli::aSocketLeadsToTheRobot()
{
    const RedisServer server;
    server.command({"SET", "a", "1"});
    const QString path = QString::fromStdString(server.socketPath());
    const Ended ended = run({"--connect", "arm-7.invalid", "--socket", path, "get", "a"});
    QCOMPARE(ended.errors, QByteArray());
    QCOMPARE(ended.output, QByteArray("a\tint\t1\n"));
}

void TestZoCli::aLargeValueIsInvalidAlone()
{
    const RedisServer server;
    server.command({"SET", "Before", "1"});
    server.command({"SET", "Big", std::string(2 << 20, 'x')});
    server.command({"SET", "Other", "0.5"});
    const Ended ended = run(at(server, {"get", "Before", "Big", "Other"}));
    QCOMPARE(ended.status, 0);
    QCOMPARE(ended.output, QByteArray("Before\tint\t1\nBig\tinvalid\t\nOther\tfloat\t0.5\n"));
    QCOMPARE(ended.errors, QByteArray());
}

void TestZoCli::aRecordIsAlwaysOneLine()
{
    const RedisServer server;
    server.command({"SET", "k\t\n\r\\\x1b", "a\tb\nc\r\n\\d\x07"});
    QCOMPARE(run(at(server, {"list"})).output, QByteArray("k\\t\\n\\r\\\\\\x1b\n"));
    QCOMPARE(run(at(server, {"get", "k\t\n\r\\\x1b"})).output,
             QByteArray("k\\t\\n\\r\\\\\\x1b\tstring\ta\\tb\\nc\\r\\n\\\\d\\x07\n"));
}

void TestZoCli::setStoresTextAsItStands()
{
    const RedisServer server;
    for (const QString text : {"3", "-3", "--help", "0.50", "", " [1, 2]\n", "\u00e9"}) {
        const Ended ended = run(at(server, {"set", "Arm/Angle", text}));
        QCOMPARE(ended.status, 0);
        QCOMPARE(ended.output + ended.errors, QByteArray());
        QCOMPARE(QString::fromStdString(server.command({"GET", "Arm/Angle"})), text);
    }
}

void TestZoCli::watchPrintsEachPollAtItsTime()
{
    const RedisServer server;
    server.command({"SET", "a", "0.5"});
    const Ended ended =
        run(at(server, {"watch", "--period", "60", "--count", "4", "a", "missing"}));
    QCOMPARE(ended.status, 0);
    QCOMPARE(ended.errors, QByteArray());
    const QStringList lines = QString(ended.output).split('\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 8);
    for (int i = 0; i < lines.size(); ++i) {
        const QRegularExpression form("^(\\d+\\.\\d{3})\t" + QString(i % 2 == 0
                                                                         ? "a\tfloat\t0\\.5$"
                                                                         : "missing\tinvalid\t$"));
        const QRegularExpressionMatch match = form.match(lines[i]);
        QVERIFY2(match.hasMatch(), qPrintable(lines[i]));
        QVERIFY2(qRound(match.captured(1).toDouble() * 1000) >= i / 2 * 60, qPrintable(lines[i]));
    }
}

void TestZoCli::watchTellsOnceOfALostRobotAndGoesOnByItself_data()
{
    QTest::addColumn<bool>("killed");
    QTest::newRow("killed") << true;
    QTest::newRow("stopped") << false;
}

void TestZoCli::watchTellsOnceOfALostRobotAndGoesOnByItself()
{
    QFETCH(bool, killed);
    RedisServer server;
    server.command({"SET", "a", "1"});
    ZoProgram zo(
        {"--connect", addressOf(server), "--timeout", "2000", "watch", "--period", "60", "a"});
    QVERIFY(zo.waitUntil([&] { return zo.output().contains("\ta\tint\t1\n"); }));

    QElapsedTimer time;
    time.start();
    killed ? server.kill() : server.stop();
    QVERIFY(zo.waitUntil([&] { return zo.errors().contains('\n'); }));
    QVERIFY2(time.elapsed() < patience, qPrintable(QString::number(time.elapsed())));
    QVERIFY2(zo.errors().startsWith("zo: the robot is lost: "), qPrintable(zo.errors()));
    QVERIFY2(zo.errors().contains(addressOf(server)), qPrintable(zo.errors()));

    const int before = linesIn(zo.output());
    killed ? server.restart() : server.resume();
    server.command({"SET", "a", "2"});
    QVERIFY(zo.waitUntil([&] { return zo.output().contains("\ta\tint\t2\n"); }));
    QVERIFY(linesIn(zo.output()) > before);
    zo.signal(SIGTERM);
    const Ended ended = endOf(zo);
    QCOMPARE(ended.status, 0);
    QVERIFY2(ended.errors.endsWith("\nzo: the robot is back\n"), ended.errors.constData());
    QCOMPARE(linesIn(ended.errors), 2);
}

void TestZoCli::watchEndsWhenTheRobotRefusesIt_data()
{
    QTest::addColumn<QStringList>("rule");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("another password")
        << QStringList{"resetpass", ">other"} << QByteArray("user or password refused: WRONGPASS");
    QTest::newRow("user switched off")
        << QStringList{"off"} << QByteArray("user or password refused: WRONGPASS");
    QTest::newRow("another certificate") << QStringList{} << QByteArray("certificate");
}

void TestZoCli::watchEndsWhenTheRobotRefusesIt()
{
    QFETCH(QStringList, rule);
    QFETCH(QByteArray, reason);
    TlsLogin login;
    ZoProgram zo(at(login.server, login.words() + QStringList{"watch", "--period", "60", "a"}));
    QVERIFY(zo.waitUntil([&] { return linesIn(zo.output()) > 0; }));
    if (rule.isEmpty()) {
        login.server.restartAsAnother();
    } else {
        std::vector<std::string> words = {"ACL", "SETUSER", "alice"};
        for (const QString& word : rule)
            words.push_back(word.toStdString());
        login.server.command(words);
        login.server.command({"CLIENT", "KILL", "USER", "alice"});
    }
    const Ended ended = endOf(zo);
    QCOMPARE(ended.status, 1);
    const QByteArray last = ended.errors.trimmed().split('\n').last();
    QVERIFY2(last.startsWith("zo: robot at " + addressOf(login.server).toUtf8()),
             ended.errors.constData());
    QVERIFY2(last.contains(reason), ended.errors.constData());
    QVERIFY2(linesIn(ended.errors) <= 2, ended.errors.constData()); // it may be seen as lost first
}

void TestZoCli::stopSignalsEndAWatchWell_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("interrupt") << SIGINT;
    QTest::newRow("terminate") << SIGTERM;
}

void TestZoCli::stopSignalsEndAWatchWell()
{
    QFETCH(int, number);
    const RedisServer server;
    ZoProgram zo(at(server, {"watch", "--period", "3600000", "a"}));
    QVERIFY(zo.waitUntil([&] { return zo.output().endsWith("\ta\tinvalid\t\n"); }));
    zo.signal(number);
    const Ended ended = endOf(zo);
    QCOMPARE(ended.status, 0);
    QCOMPARE(ended.errors, QByteArray());
    QCOMPARE(linesIn(ended.output), 1);
}

void TestZoCli::aSignalEndsAWatchThatWaitsForAStoppedRobot()
{
    RedisServer server;
    ZoProgram zo(
        {"--connect", addressOf(server), "--timeout", "3600000", "watch", "--period", "60", "a"});
    QVERIFY(zo.waitUntil([&] { return linesIn(zo.output()) > 0; }));
    server.stop();
    zo.signal(SIGINT);
    QCOMPARE(endOf(zo).status, 0);
}

void TestZoCli::aClosedOutputEndsItQuietly_data()
{
    QTest::addColumn<QString>("command");
    QTest::newRow("between polls") << "watch --period 60 a";
    QTest::newRow("in a long wait") << "watch --period 3600000 a b";
    QTest::newRow("while it lists") << "list";
}

void TestZoCli::aClosedOutputEndsItQuietly()
{
    QFETCH(QString, command);
    const RedisServer server;
    server.command(
        {"EVAL", "for i=1,20000 do redis.call('SET', 'some/long/key/' .. i, i) end", "0"});
    const Ended ended = runInShell(QString(ZO_PROGRAM " ") + at(server, {}).join(' ') + " " +
                                   command + " | head -n 1 | wc -l; exit ${PIPESTATUS[0]}");
    QCOMPARE(ended.output.trimmed(), QByteArray("1"));
    QCOMPARE(ended.errors, QByteArray());
    QCOMPARE(ended.status, 1);
}

void TestZoCli::anOutputThatCannotBeWrittenIsAFailure()
{
    const Ended full = runInShell(ZO_PROGRAM " --help > /dev/full");
    QCOMPARE(full.status, 1);
    QCOMPARE(full.errors, QByteArray("zo: cannot write the output: No space left on device\n"));
    const Ended closed = runInShell(ZO_PROGRAM " --help >&-");
    QCOMPARE(closed.status, 1);
    QCOMPARE(closed.errors, QByteArray("zo: cannot write the output: Bad file descriptor\n"));
    // What it opens itself must not take the place of the closed output.
    const RedisServer server;
    const QString list = QString(ZO_PROGRAM " ") + at(server, {"get", "a"}).join(' ');
    const Ended allClosed = runInShell(list + " <&- >&-");
    QCOMPARE(allClosed.status, 1);
    QCOMPARE(allClosed.errors, closed.errors);
}

void TestZoCli::anUnreachableRobotIsAFailure()
{
    RedisServer server;
    server.kill();
    for (const QStringList& command :
         {QStringList{"list"}, {"get", "a"}, {"set", "a", "1"}, {"watch", "a"}}) {
        const Ended ended = run(at(server, command));
        QCOMPARE(ended.status, 1);
        QCOMPARE(ended.output, QByteArray());
        QCOMPARE(linesIn(ended.errors), 1);
        QVERIFY2(ended.errors.contains(addressOf(server).toUtf8()), ended.errors.constData());
    }
}

void TestZoCli::aPasswordOpensTheRobotAndIsNeverShown()
{
    RedisServer::Options options;
    options.users = {"alice on >open-sesame ~* +@all", "guest on nopass ~* +@read +ping"};
    options.defaultPassword = "default-secret";
    const RedisServer server(options);
    server.command({"SET", "a", "1"});
    const auto get = [&server](const QByteArray& password, const QStringList& user) {
        const PasswordFile file(password);
        return run(at(server, user + QStringList{"--password-file", file.fileName(), "get", "a"}));
    };
    QCOMPARE(get("open-sesame", {"--user", "alice"}).output, QByteArray("a\tint\t1\n"));
    QCOMPARE(get("default-secret", {}).output, QByteArray("a\tint\t1\n"));
    for (const Ended& refused : {get("wrong-word", {"--user", "alice"}), get("wrong-word", {})}) {
        QCOMPARE(refused.status, 1);
        QCOMPARE(linesIn(refused.errors), 1);
        QVERIFY2(refused.errors.contains(addressOf(server).toUtf8()), refused.errors.constData());
        QVERIFY2(!refused.errors.contains("wrong-word"), refused.errors.constData());
    }
    QCOMPARE(run(at(server, {"get", "a"})).status, 1);
    QCOMPARE(run(at(server, {"--user", "alice", "get", "a"})).status, 1);
    QCOMPARE(run(at(server, {"--user", "guest", "get", "a"})).output, QByteArray("a\tint\t1\n"));
}

void TestZoCli::aPasswordMayComeThroughAPipe()
{
    RedisServer::Options options;
    options.defaultPassword = "default-secret";
    const RedisServer server(options);
    const Ended ended = runInShell(QString(ZO_PROGRAM " ") + at(server, {}).join(' ') +
                                   " --password-file <(echo default-secret) get a");
    QCOMPARE(ended.errors, QByteArray());
    QCOMPARE(ended.output, QByteArray("a\tinvalid\t\n"));
}

void TestZoCli::aPasswordThatOthersMayReadIsWarnedOfOnce()
{
    RedisServer::Options options;
    options.defaultPassword = "default-secret";
    const RedisServer server(options);
    PasswordFile file("default-secret");
    file.setPermissions(QFile::ReadOwner | QFile::ReadOther);
    const Ended ended = run(at(server, {"--password-file", file.fileName(), "get", "a"}));
    QCOMPARE(ended.status, 0);
    QCOMPARE(linesIn(ended.errors), 1);
    QVERIFY2(ended.errors.contains(file.fileName().toUtf8()), ended.errors.constData());
    QVERIFY2(ended.errors.contains("chmod 600"), ended.errors.constData());
    QVERIFY(!ended.errors.contains("default-secret"));
}

void TestZoCli::tlsChecksTheRobotsCertificate()
{
    RedisServer::Options options;
    options.tls = true;
    const RedisServer server(options);
    server.command({"SET", "a", "1"});
    const auto file = [](const std::string& path) { return QString::fromStdString(path); };
    const QStringList trusted = {"--tls", "--ca", file(server.caFile())};
    const QStringList own = {"--cert", file(server.clientCertFile()), "--key",
                             file(server.clientKeyFile())};
    QCOMPARE(run(at(server, trusted + QStringList{"get", "a"})).output, QByteArray("a\tint\t1\n"));
    QCOMPARE(run(at(server, trusted + own + QStringList{"get", "a"})).output,
             QByteArray("a\tint\t1\n"));
    const Ended untrusted = run(at(server, {"--tls", "get", "a"}));
    QCOMPARE(untrusted.status, 1);
    QCOMPARE(linesIn(untrusted.errors), 1);
    QVERIFY2(untrusted.errors.contains("certificate"), untrusted.errors.constData());
}

void TestZoCli::wrongUseIsOneLineAndStatusTwo_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QByteArray>("message");
    const auto row = [](const char* name, const QStringList& words, const QByteArray& message) {
        QTest::newRow(name) << words << message;
    };
    row("nothing", {}, "zo: there is no command (see zo --help)\n");
    row("unknown command", {"frob"}, "zo: there is no command 'frob' (see zo --help)\n");
    row("unknown option", {"--frob"}, "zo: there is no option '--frob' here (see zo --help)\n");
    row("line break in a word", {"fr\nob"}, "zo: there is no command 'fr\\nob' (see zo --help)\n");
    row("no password file", {"--password-file", "/nowhere", "list"},
        "zo: password file '/nowhere': No such file or directory (see zo --help)\n");
}

void TestZoCli::wrongUseIsOneLineAndStatusTwo()
{
    QFETCH(QStringList, words);
    QFETCH(QByteArray, message);
    const Ended ended = run(words);
    QCOMPARE(ended.status, 2);
    QCOMPARE(ended.output, QByteArray());
    QCOMPARE(ended.errors, message);
}

void TestZoCli::helpAndVersionArePrinted()
{
    const Ended help = run({"--help"});
    QCOMPARE(help.status, 0);
    QCOMPARE(help.errors, QByteArray());
    for (const char* word : {"list", "get", "set", "watch", "check", "--connect", "--user",
                             "--password-file", "--tls", "--ca", "--cert", "--key", "--timeout",
                             "--socket", "--period", "--count", "--help", "--version"})
        QVERIFY2(help.output.contains(word), word);
    const Ended version = run({"--version"});
    QCOMPARE(version.status, 0);
    QVERIFY2(QRegularExpression("^zo \\d+\\.\\d+\\.\\d+\n"
                                "libzo \\d+\\.\\d+\\.\\d+\n"
                                "OpenSSL 3\\.\\d+\\.\\d+\n"
                                "Boost 1\\.\\d+\\.\\d+\n"
                                "simdjson \\d+\\.\\d+\\.\\d+\n$")
                 .match(version.output)
                 .hasMatch(),
             version.output);
}

REGISTER_TEST(TestZoCli, QCoreApplication)
#include "tst_zo_cli.moc"
