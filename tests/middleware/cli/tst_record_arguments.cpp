// SPDX-License-Identifier: MIT
#include "support/files.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <configuration.h>
#include <progress.h>
#include <record_arguments.h>
#include <status_lines.h>

#include <kit/usage_error.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>

using namespace std::chrono_literals;
using Words = std::vector<std::string>;

Q_DECLARE_METATYPE(Words)

/// What people may ask of the program `zo-record`, and what it tells them.
class TestRecordArguments : public GuardedTest
{
    Q_OBJECT

private slots:
    void optionsAndKeysMayBeMixed();
    void whatIsNotSaidHasADefault();
    void theRobotIsChosenAsForEveryProgram();
    void helpAndVersionComeBeforeAllMistakes();
    void mistakesAreNamed_data();
    void mistakesAreNamed();
    void progressIsOneLine();
    void theStatusIsALineOfJson();
    void statusLinesComeEachSecondAndAtChanges();
    void aConfigurationsWatchedKeysAreRecorded();
    void badConfigurationsAreRefused_data();
    void badConfigurationsAreRefused();
};

namespace {

QString mistakeIn(const std::function<void()>& action)
{
    try {
        action();
    } catch (const kit::UsageError& error) {
        return error.what();
    }
    return {};
}

} // namespace

void TestRecordArguments::optionsAndKeysMayBeMixed()
{
    const RecordArguments read =
        readRecordArguments({"a", "--period", "60", "b", "--for=90s", "--output", "o.csv",
                             "--rotate", "1h", "--changes", "--gap-rows", "--quiet", "--key-names",
                             "--follow", "--status", "--", "-c", "--d"});
    QCOMPARE(read.keys, (Words{"a", "b", "-c", "--d"}));
    QCOMPARE(read.period.count(), 60);
    QVERIFY(read.duration == 90s);
    QCOMPARE(read.output, std::string("o.csv"));
    QVERIFY(read.rotation.time == 1h);
    QVERIFY(read.changes && read.gapRows && read.quiet && read.keyNames && read.follow &&
            read.status);
    QCOMPARE(readRecordArguments({"--config", "c.xml"}).configuration, std::string("c.xml"));
    QVERIFY(readRecordArguments({"--all"}).allKeys);
}

void TestRecordArguments::whatIsNotSaidHasADefault()
{
    const RecordArguments read = readRecordArguments({"a"});
    QVERIFY(read.period == 1s);
    QVERIFY(read.duration == 0s);
    QVERIFY(!read.rotation.isWanted());
    QVERIFY(!read.changes && !read.gapRows && !read.quiet && !read.keyNames && !read.follow &&
            !read.status);
}

void TestRecordArguments::theRobotIsChosenAsForEveryProgram()
{
    const RecordArguments read =
        readRecordArguments({"a", "--connect", "[::1]:7000", "--user=eve"});
    QCOMPARE(read.connection.address.toText(), std::string("[::1]:7000"));
    QCOMPARE(read.connection.options.user, std::string("eve"));
}

void TestRecordArguments::helpAndVersionComeBeforeAllMistakes()
{
    using Action = RecordArguments::Action;
    QVERIFY(readRecordArguments({"--help", "--nonsense"}).action == Action::Help);
    QVERIFY(readRecordArguments({"a", "-h"}).action == Action::Help);
    QVERIFY(readRecordArguments({"--version"}).action == Action::Version);
}

void TestRecordArguments::mistakesAreNamed_data()
{
    QTest::addColumn<Words>("words");
    QTest::addColumn<QString>("mistake");
    QTest::newRow("nothing") << Words{} << "say what to record";
    QTest::newRow("two") << Words{"--all", "a"} << "say what to record";
    QTest::newRow("two others") << Words{"--all", "--config", "c.xml"} << "say what to record";
    QTest::newRow("unknown") << Words{"a", "--nonsense"} << "'--nonsense'";
    QTest::newRow("period") << Words{"a", "--period", "0"} << "--period must be";
    QTest::newRow("for") << Words{"a", "--for", "90"} << "--for must be a time with its unit";
    QTest::newRow("rotate") << Words{"a", "--output=o", "--rotate", "1"} << "--rotate must be";
    QTest::newRow("rotate what") << Words{"a", "--rotate", "1h"} << "--rotate needs --output";
    QTest::newRow("status where") << Words{"a", "--status"} << "--status needs --output";
    QTest::newRow("certificate") << Words{"a", "--ca", "/nowhere"} << "need --tls";
}

void TestRecordArguments::mistakesAreNamed()
{
    QFETCH(Words, words);
    QFETCH(QString, mistake);
    const QString said = mistakeIn([&] { readRecordArguments(words); });
    QVERIFY2(said.contains(mistake), qPrintable(said));
}

void TestRecordArguments::progressIsOneLine()
{
    RecorderState state;
    QCOMPARE(progressText(state, {}), std::string("0 rows, 0 polls missed, no answer yet, 0 B"));
    state.rows = 1;
    state.missedPolls = 1;
    state.age = 12ms;
    state.bytes = 1234;
    state.freeBytes = 5000000000;
    QCOMPARE(progressText(state, 9.96),
             std::string("1 row, 1 poll missed, age 12 ms, 9.9/s, 1.2 kB, 5.0 GB free"));
}

void TestRecordArguments::theStatusIsALineOfJson()
{
    RecorderState state;
    const auto line = [&state] { return QByteArray::fromStdString(statusLine(state)); };
    const QJsonValue unknown;
    QJsonObject object{{"state", "recording"}, {"rows", 0},  {"missed", 0},     {"tooLarge", 0},
                       {"empty", 0},           {"bytes", 0}, {"free", unknown}, {"age", unknown},
                       {"file", ""},           {"cause", ""}};
    QCOMPARE(QJsonDocument::fromJson(line()).object(), object);
    state.phase = RecorderState::Phase::Waiting;
    state.cause = "a \"cause\"\n";
    state.rows = 1;
    state.missedPolls = 2;
    state.tooLarge = 4;
    state.emptyKeys = 5;
    state.age = 12ms;
    state.bytes = 3;
    state.freeBytes = 5000000000;
    state.path = "/b.csv";
    object = {{"state", "waiting"}, {"rows", 1},
              {"missed", 2},        {"tooLarge", 4},
              {"empty", 5},         {"bytes", 3},
              {"free", 5e9},        {"age", 12},
              {"file", "/b.csv"},   {"cause", "a \"cause\"\n"}};
    QCOMPARE(QJsonDocument::fromJson(line()).object(), object);
    QCOMPARE(line().count('\n'), 1);
    QVERIFY(line().endsWith('\n'));
    state.path = "/\xff.csv";
    QVERIFY2(line().contains("/\\udcff.csv"), line());
}

void TestRecordArguments::statusLinesComeEachSecondAndAtChanges()
{
    using Phase = RecorderState::Phase;
    QStringList states;
    StatusLines lines([&states](const std::string& line) {
        states += QString::fromStdString(line).section('"', 3, 3);
    });
    const auto pass = [&lines](std::chrono::milliseconds time, Phase phase) {
        const StatusLines::Clock::time_point now(std::chrono::hours(1) + time);
        RecorderState state;
        state.phase = phase;
        if (lines.isDue(now, phase))
            lines.show(now, state);
    };
    pass(0ms, Phase::Recording);
    pass(999ms, Phase::Recording);
    QCOMPARE(states, QStringList{"recording"});
    pass(1000ms, Phase::Recording);
    pass(1100ms, Phase::Waiting);
    pass(2099ms, Phase::Waiting);
    pass(2100ms, Phase::Waiting);
    pass(2200ms, Phase::Ended);
    pass(9999ms, Phase::Ended);
    QCOMPARE(states, (QStringList{"recording", "recording", "waiting", "waiting", "ended"}));
}

void TestRecordArguments::aConfigurationsWatchedKeysAreRecorded()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("c.xml");
    writeBytes(path, "<stm_viewer>"
                     "<stm_value name='k1' alias='one' watch='1' graph='0'/>"
                     "<stm_value name='k2' alias='two' watch='0' graph='0'/>"
                     "<other/><stm_value name='k3' alias='\xe9' watch='7' graph='0'/>"
                     "</stm_viewer>");
    const Columns columns = watchedColumns(path.toStdString());
    QCOMPARE(columns.size(), std::size_t(2));
    QCOMPARE(columns[0].key + columns[0].name, std::string("k1one"));
    QCOMPARE(columns[1].key + columns[1].name, std::string("k3\xe9"));
}

void TestRecordArguments::badConfigurationsAreRefused_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("message");
    QTest::newRow("empty") << QByteArray() << "is no configuration";
    QTest::newRow("no XML") << QByteArray("time,a\r\n") << "is no configuration";
    QTest::newRow("other XML") << QByteArray("<html/>") << "no element 'stm_viewer'";
    QTest::newRow("nothing") << QByteArray("<stm_viewer/>") << "watches no key: tick Watch";
    QTest::newRow("no alias") << QByteArray("<stm_viewer>\n<stm_value name='a' watch='1'/>"
                                            "</stm_viewer>")
                              << "without 'alias' in line 2";
    QTest::newRow("no name") << QByteArray("<stm_viewer><stm_value alias='a'/></stm_viewer>")
                             << "without 'name' in line 1";
}

void TestRecordArguments::badConfigurationsAreRefused()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, message);
    const QTemporaryDir folder;
    const QString path = folder.filePath("c.xml");
    writeBytes(path, content);
    const QString said = mistakeIn([&] { watchedColumns(path.toStdString()); });
    QVERIFY2(said.contains(message) && said.contains(path), qPrintable(said));
    const QString none = mistakeIn([&] { watchedColumns(path.toStdString() + "x"); });
    QVERIFY2(none.contains("cannot be read: No such file"), qPrintable(none));
}

REGISTER_TEST(TestRecordArguments, NoApplication)
#include "tst_record_arguments.moc"
