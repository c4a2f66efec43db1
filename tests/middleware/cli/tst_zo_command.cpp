// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <kit/usage_error.h>

#include <zo_command.h>

#include <QtTest>

using Action = ZoCommand::Action;
using Words = std::vector<std::string>;

Q_DECLARE_METATYPE(Words)

/// What people may ask of the program `zo`.
class TestZoCommand : public GuardedTest
{
    Q_OBJECT

private slots:
    void commandsHaveTheirOperands();
    void watchHasOptionsOfItsOwn();
    void whatRecordGetsIsReadByItsOwnProgram();
    void aReplayIsControlled();
    void theRobotIsChosenByOptions();
    void helpAndVersionComeBeforeAllMistakes();
    void aValueMayLookLikeAnOption();
    void mistakesAreNamed_data();
    void mistakesAreNamed();
};

namespace {

QString mistakeIn(const Words& words)
{
    try {
        readZoCommand(words);
    } catch (const kit::UsageError& error) {
        return error.what();
    }
    return {};
}

} // namespace

void TestZoCommand::commandsHaveTheirOperands()
{
    QVERIFY(readZoCommand({"list"}).action == Action::List);
    QCOMPARE(readZoCommand({"list", "Arm"}).operands, Words{"Arm"});
    const ZoCommand get = readZoCommand({"get", "a", "b", "a"});
    QVERIFY(get.action == Action::Get);
    QCOMPARE(get.operands, (Words{"a", "b", "a"}));
    const ZoCommand set = readZoCommand({"set", "a", ""});
    QVERIFY(set.action == Action::Set);
    QCOMPARE(set.operands, (Words{"a", ""}));
    QVERIFY(readZoCommand({"check"}).action == Action::Check);
    QVERIFY(readZoCommand({"robots"}).action == Action::Robots);
    QVERIFY(!readZoCommand({"robots"}).isJson);
    QVERIFY(readZoCommand({"robots", "--json"}).isJson);
}

void TestZoCommand::watchHasOptionsOfItsOwn()
{
    const ZoCommand plain = readZoCommand({"watch", "a"});
    QVERIFY(plain.action == Action::Watch);
    QCOMPARE(plain.period.count(), 1000);
    QCOMPARE(plain.count, 0);
    const ZoCommand full = readZoCommand({"watch", "--period", "60", "--count=3", "a", "b"});
    QCOMPARE(full.period.count(), 60);
    QCOMPARE(full.count, 3);
    QCOMPARE(full.operands, (Words{"a", "b"}));
}

void TestZoCommand::whatRecordGetsIsReadByItsOwnProgram()
{
    const ZoCommand command = readZoCommand(
        {"--password-file", "/nowhere", "--tls", "record", "--for", "1h", "record", "--", "-a"});
    QVERIFY(command.action == Action::Record);
    QCOMPARE(command.operands,
             (Words{"--password-file", "/nowhere", "--tls", "--for", "1h", "record", "--", "-a"}));
    QCOMPARE(readZoCommand({"--tls", "--", "record", "--all"}).operands, (Words{"--tls", "--all"}));
    QVERIFY(readZoCommand({"record", "--help"}).action == Action::Record);
}

void TestZoCommand::aReplayIsControlled()
{
    const auto textOf = [](const Words& words) {
        const ZoCommand command = readZoCommand(words);
        return command.action == Action::ReplayControl ? command.operands : Words{};
    };
    QCOMPARE(textOf({"replay-control", "status"}), Words{"status"});
    QCOMPARE(textOf({"replay-control", "pause"}), Words{"pause"});
    QCOMPARE(textOf({"replay-control", "step", "3"}), Words{"step 3"});
    QCOMPARE(textOf({"replay-control", "jump", "-90s"}), Words{"jump -90s"});
    QCOMPARE(textOf({"replay-control", "speed 0.5"}), Words{"speed 0.5"});
}

void TestZoCommand::theRobotIsChosenByOptions()
{
    QCOMPARE(readZoCommand({"list"}).connection.address.toText(), std::string("127.0.0.1:6379"));
    const ZoCommand command = readZoCommand({"--connect", "[::1]:7000", "--user=alice", "list"});
    QCOMPARE(command.connection.address.toText(), std::string("[::1]:7000"));
    QCOMPARE(command.connection.options.user, std::string("alice"));
}

void TestZoCommand::helpAndVersionComeBeforeAllMistakes()
{
    QVERIFY(readZoCommand({"--help"}).action == Action::Help);
    QVERIFY(readZoCommand({"--tls", "--help", "--nonsense"}).action == Action::Help);
    QVERIFY(readZoCommand({"get", "--help"}).action == Action::Help);
    QVERIFY(readZoCommand({"watch", "--period", "60", "--help"}).action == Action::Help);
    QVERIFY(readZoCommand({"--version", "--nonsense"}).action == Action::Version);
    QVERIFY(readZoCommand({"-h"}).action == Action::Help);
    QVERIFY(readZoCommand({"set", "-h"}).action == Action::Help);
    QVERIFY(readZoCommand({"list", "--version"}).action == Action::Version);
}

void TestZoCommand::aValueMayLookLikeAnOption()
{
    QCOMPARE(readZoCommand({"set", "a", "-3"}).operands, (Words{"a", "-3"}));
    QCOMPARE(readZoCommand({"set", "a", "--help"}).operands, (Words{"a", "--help"}));
    QCOMPARE(readZoCommand({"set", "--", "--a", "--"}).operands, (Words{"--a", "--"}));
    QCOMPARE(readZoCommand({"get", "--", "-a", "--help"}).operands, (Words{"-a", "--help"}));
    QCOMPARE(readZoCommand({"--", "get", "-"}).operands, Words{"-"});
}

void TestZoCommand::mistakesAreNamed_data()
{
    QTest::addColumn<Words>("words");
    QTest::addColumn<QString>("mistake");
    const auto row = [](const Words& words, const char* mistake) {
        std::string name;
        for (const std::string& word : words)
            name += word + " ";
        QTest::newRow(name.c_str()) << words << mistake;
    };
    row({}, "no command");
    row({"--tls"}, "no command");
    row({""}, "no command ''");
    row({"frobnicate"}, "'frobnicate'");
    row({"-v"}, "'-v'");
    row({"--nonsense", "list"}, "'--nonsense'");
    row({"list", "--period", "60"}, "'--period'");
    row({"--period", "60", "watch", "a"}, "'--period'");
    row({"replay-control"}, "it goes: zo replay-control");
    row({"replay-control", "fly"}, "'fly' is no command for a replay");
    row({"replay-control", "status", "now"}, "'status now' is no command for a replay");
    row({"replay-control", "speed", "0"}, "'speed 0' is no command for a replay");
    row({"replay-control", "step", "1", "2"}, "it goes: zo replay-control");
    row({"--connect"}, "--connect needs a value");
    row({"--connect", "", "list"}, "--connect needs a value");
    row({"--connect=", "list"}, "--connect needs a value");
    row({"--tls=yes", "list"}, "--tls has no value");
    row({"--connect", ":6379", "list"}, "--connect: robot address ':6379': there is no host");
    row({"--timeout", "0", "list"}, "--timeout must be a whole number from 1 to 3600000, not '0'");
    row({"list", "a", "b"}, "zo list [SUBSTRING]");
    row({"get"}, "zo get KEY...");
    row({"robots", "a"}, "zo robots [--json]");
    row({"robots", "--json=yes"}, "--json has no value");
    row({"check", "a"}, "zo check");
    row({"check", "--count", "3"}, "'--count'");
    row({"get", "a", "--count"}, "'--count'");
    row({"set", "a"}, "zo set KEY VALUE");
    row({"set", "a", "b", "c"}, "zo set KEY VALUE");
    row({"set", "--a", "b"}, "'--a'");
    row({"watch"}, "zo watch [--period MS] [--count N] KEY...");
    row({"watch", "--period"}, "--period needs a value");
    row({"watch", "--period", "soon", "a"}, "'soon'");
    row({"watch", "--period", "3600001", "a"}, "--period must be a whole number from 1 to 3600000");
    row({"watch", "--count", "0", "a"}, "--count must be a whole number from 1");
    row({"watch", "a", "--period", "60"}, "'--period'");
    row({"--ca", "ca.pem", "list"}, "need --tls");
    row({"--password-file", "/nowhere/secret", "list"},
        "'/nowhere/secret': No such file or directory");
}

void TestZoCommand::mistakesAreNamed()
{
    QFETCH(Words, words);
    QFETCH(QString, mistake);
    const QString message = mistakeIn(words);
    QVERIFY2(message.contains(mistake), qPrintable(message));
}

REGISTER_TEST(TestZoCommand, NoApplication)
#include "tst_zo_command.moc"
