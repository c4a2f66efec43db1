// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <command_line.h>
#include <usage_error.h>

#include <QTemporaryFile>
#include <QtTest>

using Command = CliCommandLine::Command;
using Words = std::vector<std::string>;

Q_DECLARE_METATYPE(Words)

/// What people may ask of the program `zo`.
class TestCliCommandLine : public GuardedTest
{
    Q_OBJECT

private slots:
    void commandsHaveTheirOperands();
    void watchHasOptionsOfItsOwn();
    void theRobotIsChosenByOptions();
    void helpAndVersionComeBeforeAllMistakes();
    void aValueMayLookLikeAnOption();
    void aPasswordIsAFilesFirstLine_data();
    void aPasswordIsAFilesFirstLine();
    void aLineTooLongIsNoPassword();
    void mistakesAreNamed_data();
    void mistakesAreNamed();
};

namespace {

QString mistakeIn(const Words& words)
{
    try {
        readCommandLine(words);
    } catch (const UsageError& error) {
        return error.what();
    }
    return {};
}

QString write(QTemporaryFile& file, const QByteArray& text)
{
    file.open();
    file.write(text);
    file.close();
    return file.fileName();
}

} // namespace

void TestCliCommandLine::commandsHaveTheirOperands()
{
    QVERIFY(readCommandLine({"list"}).command == Command::List);
    QCOMPARE(readCommandLine({"list", "Arm"}).operands, Words{"Arm"});
    const CliCommandLine get = readCommandLine({"get", "a", "b", "a"});
    QVERIFY(get.command == Command::Get);
    QCOMPARE(get.operands, (Words{"a", "b", "a"}));
    const CliCommandLine set = readCommandLine({"set", "a", ""});
    QVERIFY(set.command == Command::Set);
    QCOMPARE(set.operands, (Words{"a", ""}));
}

void TestCliCommandLine::watchHasOptionsOfItsOwn()
{
    const CliCommandLine plain = readCommandLine({"watch", "a"});
    QVERIFY(plain.command == Command::Watch);
    QCOMPARE(plain.period.count(), 1000);
    QCOMPARE(plain.count, 0);
    const CliCommandLine full = readCommandLine({"watch", "--period", "60", "--count=3", "a", "b"});
    QCOMPARE(full.period.count(), 60);
    QCOMPARE(full.count, 3);
    QCOMPARE(full.operands, (Words{"a", "b"}));
}

void TestCliCommandLine::theRobotIsChosenByOptions()
{
    QCOMPARE(readCommandLine({"list"}).address.toText(), std::string("127.0.0.1:6379"));
    QTemporaryFile file;
    const std::string path = write(file, "secret\n").toStdString();
    const CliCommandLine line = readCommandLine(
        {"--connect", "[::1]:7000", "--user", "alice", "--password-file", path, "--tls",
         "--ca=ca.pem", "--cert", "c.pem", "--key", "k.pem", "--timeout", "300", "list"});
    QCOMPARE(line.address.toText(), std::string("[::1]:7000"));
    QCOMPARE(line.options.user, std::string("alice"));
    QCOMPARE(line.options.password, std::string("secret"));
    QVERIFY(line.options.tls && line.options.tlsVerify);
    QCOMPARE(line.options.tlsCaFile, std::string("ca.pem"));
    QCOMPARE(line.options.tlsCertFile, std::string("c.pem"));
    QCOMPARE(line.options.tlsKeyFile, std::string("k.pem"));
    QCOMPARE(line.options.connectTimeout.count(), 300);
    QCOMPARE(line.options.exchangeTimeout.count(), 300);
    QCOMPARE(line.options.keyListTimeout.count(), 300);
}

void TestCliCommandLine::helpAndVersionComeBeforeAllMistakes()
{
    QVERIFY(readCommandLine({"--help"}).command == Command::Help);
    QVERIFY(readCommandLine({"--tls", "--help", "--nonsense"}).command == Command::Help);
    QVERIFY(readCommandLine({"get", "--help"}).command == Command::Help);
    QVERIFY(readCommandLine({"watch", "--period", "60", "--help"}).command == Command::Help);
    QVERIFY(readCommandLine({"--version", "--nonsense"}).command == Command::Version);
}

void TestCliCommandLine::aValueMayLookLikeAnOption()
{
    QCOMPARE(readCommandLine({"set", "a", "-3"}).operands, (Words{"a", "-3"}));
    QCOMPARE(readCommandLine({"set", "a", "--help"}).operands, (Words{"a", "--help"}));
    QCOMPARE(readCommandLine({"set", "--", "--a", "--"}).operands, (Words{"--a", "--"}));
    QCOMPARE(readCommandLine({"get", "--", "-a", "--help"}).operands, (Words{"-a", "--help"}));
    QCOMPARE(readCommandLine({"--", "get", "-"}).operands, Words{"-"});
}

void TestCliCommandLine::aPasswordIsAFilesFirstLine_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("password");
    QTest::newRow("one line") << QByteArray("secret\n") << "secret";
    QTest::newRow("no line break") << QByteArray("secret") << "secret";
    QTest::newRow("two lines") << QByteArray("secret\nmore\n") << "secret";
    QTest::newRow("CR LF") << QByteArray("secret\r\n") << "secret";
    QTest::newRow("blanks belong to it") << QByteArray(" se cret \n") << " se cret ";
    QTest::newRow("longest") << QByteArray(4096, 'x') + '\n' << QString(4096, 'x');
}

void TestCliCommandLine::aPasswordIsAFilesFirstLine()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, password);
    QTemporaryFile file;
    const std::string path = write(file, content).toStdString();
    QCOMPARE(readCommandLine({"--password-file", path, "list"}).options.password,
             password.toStdString());
}

void TestCliCommandLine::aLineTooLongIsNoPassword()
{
    QTemporaryFile file;
    const std::string path = write(file, QByteArray(4097, 'x')).toStdString();
    const QString mistake = mistakeIn({"--password-file", path, "list"});
    QVERIFY2(mistake.contains("its first line is too long"), qPrintable(mistake));
}

void TestCliCommandLine::mistakesAreNamed_data()
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
    row({"--connect"}, "--connect needs a value");
    row({"--connect", "", "list"}, "--connect needs a value");
    row({"--connect=", "list"}, "--connect needs a value");
    row({"--tls=yes", "list"}, "--tls has no value");
    row({"--connect", ":6379", "list"}, "--connect: robot address ':6379': there is no host");
    row({"--connect", "arm:0", "list"}, "from 1 to 65535");
    row({"--connect", "arm:65536", "list"}, "from 1 to 65535");
    row({"--connect", "arm:http", "list"}, "from 1 to 65535");
    row({"--connect", "::1", "list"}, "in brackets");
    row({"--timeout", "0", "list"}, "--timeout must be a whole number from 1 to 3600000, not '0'");
    row({"--timeout", "-5", "list"}, "'-5'");
    row({"--timeout", "1.5", "list"}, "'1.5'");
    row({"--timeout", "99999999999999999999", "list"}, "whole number");
    row({"list", "a", "b"}, "zo list [SUBSTRING]");
    row({"get"}, "zo get KEY...");
    row({"get", "a", "--count"}, "'--count'");
    row({"set", "a"}, "zo set KEY VALUE");
    row({"set", "a", "b", "c"}, "zo set KEY VALUE");
    row({"set", "--a", "b"}, "'--a'");
    row({"watch"}, "zo watch [--period MS] [--count N] KEY...");
    row({"watch", "--period"}, "--period needs a value");
    row({"watch", "--period", "soon", "a"}, "'soon'");
    row({"watch", "--count", "0", "a"}, "--count must be a whole number from 1");
    row({"watch", "a", "--period", "60"}, "'--period'");
    row({"--ca", "ca.pem", "list"}, "need --tls");
    row({"--tls", "--cert", "c.pem", "list"}, "need each other");
    row({"--tls", "--key", "k.pem", "list"}, "need each other");
    row({"--password-file", "/nowhere/secret", "list"},
        "'/nowhere/secret': No such file or directory");
    row({"--password-file", "/", "list"}, "'/': Is a directory");
    row({"--password-file", "/dev/null", "list"}, "'/dev/null': its first line is empty");
    row({"--password-file", "/dev/zero", "list"}, "'/dev/zero': its first line is too long");
}

void TestCliCommandLine::mistakesAreNamed()
{
    QFETCH(Words, words);
    QFETCH(QString, mistake);
    const QString message = mistakeIn(words);
    QVERIFY2(message.contains(mistake), qPrintable(message));
}

REGISTER_TEST(TestCliCommandLine, NoApplication)
#include "tst_cli_command_line.moc"
