// SPDX-License-Identifier: MIT
#include "support/full_pipe.h"
#include "support/guarded_test.h"
#include "support/password_file.h"
#include "support/patience.h"
#include "support/record_bench.h"
#include "support/register_test.h"
#include "support/terminal.h"

#include <row_sink.h>

#include <QtTest>

#include <csignal>
#include <termios.h>
#include <utility>

/// `zo record`, run as people and scripts run it, with real servers and real readers of its files.
class TestZoRecord : public GuardedTest, private RecordBench
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void aRobotIsRecordedByAConfiguration();
    void allKeysAreRecordedSorted();
    void optionsBeforeTheCommandHold();
    void aSecondRunContinuesTheFile();
    void aLostRobotIsAGap();
    void aRobotThatRefusesEndsItWithAWholeFile();
    void eachRotatedFileOfChangesBeginsWithAllValues();
    void signalsEndItWell_data();
    void signalsEndItWell();
    void aFileTooLargeEndsItWithWholeRows();
    void aReaderThatIsGoneEndsIt();
    void otherToolsReadIt_data();
    void otherToolsReadIt();
    void followingRecordsTheSameValues();
    void helpAndWrongUseAreThoseOfRecord();
    void aStoppedTerminalHoldsUpNothing();
    void aReaderWhoPausesGetsWholeRowsAgain();
    void aReaderWhoPausesDoesNotHoldUpTheEnd();
};

void TestZoRecord::aRobotIsRecordedByAConfiguration()
{
    const QString configuration = fFolder->filePath("c.xml");
    writeBytes(configuration, "<stm_viewer><stm_value name='b' alias='Mode' watch='1' graph='0'/>"
                              "<stm_value name='c' alias='c' watch='0' graph='0'/>"
                              "<stm_value name='a' alias='Angle, left' watch='1' graph='0'/>"
                              "<stm_value name='x' alias='x' watch='1' graph='0'/></stm_viewer>");
    const QStringList words{"--config", configuration, "--period", "50", "--for", "200ms"};
    const Ended ended = run(recording(words));
    QCOMPARE(ended.status, 0);
    QCOMPARE(ended.output, QByteArray());
    QVERIFY2(ended.errors.contains("never a value to record of 'x'"), ended.errors);
    QCOMPARE(lines()[0], QString("time,Mode,\"Angle, left\",x"));
    QVERIFY(lines().size() >= 2 && lines().size() <= 5);
    const QDateTime before = QDateTime::currentDateTime().addSecs(-patience / 1000);
    for (const QString& row : lines().mid(1)) {
        QVERIFY2(row.endsWith(",\"\"\"walking\"\"\",0.5,"), qPrintable(row));
        const double time = row.section(',', 0, 0).toDouble() * 1000;
        QVERIFY(time > double(before.toMSecsSinceEpoch()) &&
                time <= double(QDateTime::currentMSecsSinceEpoch()));
    }
    QVERIFY(QFile::remove(path()));
    QCOMPARE(run(recording(words + QStringList{"--key-names"})).status, 0);
    QCOMPARE(lines()[0], QString("time,b,a,x"));
}

void TestZoRecord::allKeysAreRecordedSorted()
{
    const Ended ended = run(at(*fServer, {"record", "--all", "--for", "1ms"}));
    QCOMPARE(ended.errors, QByteArray());
    const QList<QByteArray> rows = ended.output.split('\n');
    QCOMPARE(rows[0], QByteArray("time,a,b,c\r"));
    QVERIFY2(rows[1].endsWith(",0.5,\"\"\"walking\"\"\",\"[1,\"\"x\\n\"\"]\"\r"), rows[1]);
    QCOMPARE(rows.size(), 3);
}

void TestZoRecord::optionsBeforeTheCommandHold()
{
    const Ended ended =
        run({"--connect", addressOf(*fServer), "--", "record", "--for=1ms", "a", "--period=50"});
    QCOMPARE(ended.status, 0);
    QCOMPARE(ended.output.count('\n'), 2);
}

void TestZoRecord::aSecondRunContinuesTheFile()
{
    QCOMPARE(run(recording({"a", "--for", "1ms"})).status, 0);
    const QByteArray first = bytesOf(path());
    QCOMPARE(run(recording({"a", "--for", "1ms"})).status, 0);
    QVERIFY(bytesOf(path()).startsWith(first));
    QCOMPARE(lines().size(), 3);
    const Ended other = run(recording({"b", "--for", "1ms"}));
    QCOMPARE(other.status, 1);
    QVERIFY2(other.errors.contains("choose another file"), other.errors);
    QCOMPARE(lines().size(), 3);
}

void TestZoRecord::aLostRobotIsAGap()
{
    ZoProgram zo(recording({"--gap-rows", "--period", "50", "a"}));
    QVERIFY(zo.waitUntil([&] { return lines().size() > 2; }));
    fServer->kill();
    QVERIFY(zo.waitForError("zo record: the robot is lost: "));
    QVERIFY(zo.waitUntil([&] { return lines().last().endsWith(','); }));
    const auto before = lines().size();
    fServer->restart();
    fServer->command({"SET", "a", "7"});
    QVERIFY(zo.waitForError("zo record: the robot is back"));
    QVERIFY(zo.waitUntil([&] { return lines().last().endsWith(",7"); }));
    zo.signal(SIGTERM);
    QCOMPARE(zo.waitForExit(), 0);
    QVERIFY(lines().size() > before);
    double last = 0;
    for (const QString& row : lines().mid(1)) {
        const double time = row.section(',', 0, 0).toDouble();
        QVERIFY2(time >= last, qPrintable(row));
        last = time;
    }
}

void TestZoRecord::aRobotThatRefusesEndsItWithAWholeFile()
{
    ZoProgram zo(recording({"--period", "50", "a"}));
    QVERIFY(zo.waitUntil([&] { return lines().size() > 2; }));
    fServer->command({"CONFIG", "SET", "requirepass", "secret"});
    fServer->command({"CLIENT", "KILL", "TYPE", "normal", "SKIPME", "yes"});
    QCOMPARE(zo.waitForExit(), 1);
    QVERIFY2(zo.errors().contains("zo record: "), qPrintable(zo.errors()));
    QVERIFY(bytesOf(path()).endsWith("\r\n"));
}

void TestZoRecord::eachRotatedFileOfChangesBeginsWithAllValues()
{
    ZoProgram zo(recording({"--changes", "--rotate", "300ms", "--period", "20", "a", "b", "x"}));
    const QDir folder(fFolder->path());
    const auto files = [&] { return folder.entryList({"a-*.csv"}, QDir::Files, QDir::Name); };
    int value = 0;
    QVERIFY(zo.waitUntil([&] {
        fServer->command({"SET", "a", std::to_string(++value)});
        return files().size() > 3;
    }));
    zo.signal(SIGTERM);
    QCOMPARE(zo.waitForExit(), 0);
    for (const QString& file : files()) {
        const QList<QByteArray> rows = bytesOf(folder.filePath(file)).split('\n');
        QCOMPARE(rows[0], QByteArray("time,key,type,value\r"));
        QVERIFY2(rows.value(1).contains(",a,"), rows.value(1));
        QVERIFY2(rows.value(2).contains(",b,string,\"\"\"walking\"\"\""), rows.value(2));
        QVERIFY2(rows.value(3).endsWith(",x,invalid,\r"), rows.value(3));
    }
}

void TestZoRecord::signalsEndItWell_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void TestZoRecord::signalsEndItWell()
{
    QFETCH(int, number);
    ZoProgram zo(recording({"--period", "3600000", "a"}));
    QVERIFY(zo.waitUntil([&] { return lines().size() == 2; }));
    zo.signal(number);
    QCOMPARE(zo.waitForExit(), 0);
    QCOMPARE(zo.errors(), QString());
    QVERIFY(bytesOf(path()).endsWith(",0.5\r\n"));
}

void TestZoRecord::aFileTooLargeEndsItWithWholeRows()
{
    // More than a build that counts lines writes of each source as it ends: that goes on to count.
    const int kilobytes = 256;
    const QString text(20000, 'x');
    fServer->command({"SET", "a", text.toStdString()});
    const QString command = QString("ulimit -f %1; exec '" ZO_PROGRAM "' ").arg(kilobytes) +
                            recording({"--period", "1", "a"}).join(' ');
    Program shell("bash", {"-c", command});
    shell.start();
    const Ended ended = endOf(shell);
    QCOMPARE(ended.status, 1);
    QVERIFY2(ended.errors.contains("cannot write the file"), ended.errors);
    QVERIFY2(ended.errors.contains("it holds whole rows until"), ended.errors);
    QVERIFY(bytesOf(path()).size() <= kilobytes * 1024);
    QVERIFY(bytesOf(path()).endsWith(",\"\"\"" + text.toLatin1() + "\"\"\"\r\n"));
}

void TestZoRecord::aReaderThatIsGoneEndsIt()
{
    const QString command = "'" ZO_PROGRAM "' " +
                            at(*fServer, {"record", "--period", "3600000", "a"}).join(' ') +
                            " | head -n 2 | wc -l; exit ${PIPESTATUS[0]}";
    Program shell("bash", {"-c", command});
    shell.start();
    const Ended ended = endOf(shell);
    QCOMPARE(ended.output, QByteArray("2\n"));
    QCOMPARE(ended.errors, QByteArray());
    QCOMPARE(ended.status, 1);
}

void TestZoRecord::otherToolsReadIt_data()
{
    QTest::addColumn<QString>("reader");
    QTest::newRow("Python's csv") << QString(R"(
import csv, sys
rows = list(csv.DictReader(open(sys.argv[1], newline="", encoding="utf-8"), strict=True))
)");
    QTest::newRow("pandas") << QString(R"(
import pandas, sys
table = pandas.read_csv(sys.argv[1])
assert str(table["a"].dtype) == "float64", table.dtypes
assert table["missing"].isna().all()
rows = table.to_dict("records")
)");
}

void TestZoRecord::otherToolsReadIt()
{
    QFETCH(QString, reader);
    fServer->command({"SET", "odd", "\"comma, \\\"quote\\\"\\nline \u00e9\""});
    fServer->command({"SET", "bytes", "\xff"});
    const QStringList keys{"a", "c", "odd", "bytes", "missing"};
    QCOMPARE(run(recording(QStringList{"--period", "20", "--for", "60ms"} + keys)).status, 0);
    const QString print = R"(
import json
row = rows[-1]
assert float(row["time"]) > 1e9
print(json.dumps([float(row["a"]), json.loads(row["c"]), json.loads(row["odd"]),
                  list(json.loads(row["bytes"]).encode("utf-8", "surrogateescape"))]))
)";
    Program python("/usr/bin/python3", {"-c", reader + print, path()});
    python.start();
    const Ended ended = endOf(python);
    QCOMPARE(ended.errors, QByteArray());
    const QByteArray expected =
        "[0.5, [1, \"x\\n\"], \"comma, \\\"quote\\\"\\nline \\u00e9\", [255]]\n";
    QCOMPARE(ended.output, expected);
}

void TestZoRecord::followingRecordsTheSameValues()
{
    ZoProgram zo(recording({"--follow", "--changes", "--period", "50", "a", "b"}));
    QVERIFY(zo.waitUntil([&] { return lines().size() == 3; }));
    for (const char* value : {"1", "\"1\"", "1.0"}) {
        fServer->command({"SET", "a", value});
        const QString cell = QString(value).replace('"', "\"\"\"");
        QVERIFY(zo.waitUntil([&] { return lines().last().endsWith("," + cell); }));
    }
    zo.signal(SIGINT);
    QCOMPARE(zo.waitForExit(), 0);
    QCOMPARE(lines().filter(",b,").size(), 1);
    QCOMPARE(lines().filter(",a,int,1").size(), 1);
    QCOMPARE(lines().filter(",a,string,\"\"\"1\"\"\"").size(), 1);
    QCOMPARE(lines().filter(",a,float,1.0").size(), 1);
}

void TestZoRecord::helpAndWrongUseAreThoseOfRecord()
{
    const Ended help = run({"record", "--help"});
    QCOMPARE(help.status, 0);
    QVERIFY2(help.output.startsWith("Usage: zo record "), help.output);
    for (const QByteArray& line : help.output.split('\n'))
        QVERIFY2(line.size() <= 90, line);
    const QByteArray version = run({"record", "--version"}).output;
    QVERIFY2(version.startsWith("zo record "), version);
    QVERIFY2(version.contains(QByteArray("\nQt ") + qVersion() + "\nTinyXML 2."), version);
    QVERIFY2(version.contains("\nlibzo "), version);
    const Ended wrong = run({"record"});
    QCOMPARE(wrong.status, 2);
    QCOMPARE(wrong.errors.count('\n'), 1);
    QVERIFY2(wrong.errors.contains("(see zo record --help)"), wrong.errors);
    const Ended ambiguous = run(recording({"key", "type", "value"}));
    QCOMPARE(ambiguous.status, 2);
    QVERIFY2(ambiguous.errors.contains("look like those of --changes"), ambiguous.errors);
    const Ended nothing = run(recording({"--config", "/no/such.xml"}));
    QCOMPARE(nothing.status, 2);
    QCOMPARE(nothing.errors, QByteArray("zo record: the configuration file '/no/such.xml' cannot "
                                        "be read: No such file or directory\n"));
    QCOMPARE(run(recording({"key", "type", "value", "--changes", "--for", "1ms"})).status, 0);
    QVERIFY(QFile::remove(path()));
    const Ended nobody = run({"--connect", "127.0.0.1:1", "record", "a", "--output", path()});
    QCOMPARE(nobody.status, 1);
    QVERIFY(!QFile::exists(path()));
}

void TestZoRecord::aStoppedTerminalHoldsUpNothing()
{
    const Terminal terminal;
    Program shell("bash",
                  {"-c", "exec '" ZO_PROGRAM "' " + recording({"--period", "20", "a"}).join(' ') +
                             " 2>" + terminal.path()});
    shell.start();
    QVERIFY(shell.waitUntil([&] { return lines().size() > 2; }));
    QCOMPARE(::tcflow(terminal.descriptor(), TCOOFF), 0);
    const auto newest = [&] { return lines().last().section(',', 0, 0).toDouble(); };
    const double stopped = newest();
    QVERIFY(shell.waitUntil([&] { return newest() > stopped + 2.5; })); // two lines of progress
    shell.signal(SIGTERM);
    QCOMPARE(shell.waitForExit(), 0);
}

void TestZoRecord::aReaderWhoPausesGetsWholeRowsAgain()
{
    const std::string text(200000, 'x');
    fServer->command({"SET", "a", text});
    const FullPipe pipe;
    Program shell("bash", {"-c", "exec '" ZO_PROGRAM "' " +
                                     at(*fServer, {"record", "--period", "20", "a"}).join(' ') +
                                     " >" + pipe.path()});
    shell.start();
    QVERIFY(shell.waitForError("the reader of the output pauses: polls are missed"));
    pipe.drain();
    QByteArray rows;
    const int wanted = int(StreamSink::fMostWaiting) * 3;
    while (rows.size() < wanted) {
        const QByteArray piece = pipe.read(65536);
        QVERIFY(!piece.isEmpty());
        rows += piece;
    }
    shell.signal(SIGTERM);
    QList<QByteArray> read = rows.split('\n');
    QCOMPARE(read.takeFirst(), QByteArray("time,a\r"));
    read.removeLast();
    for (const QByteArray& row : std::as_const(read))
        QVERIFY2(row.endsWith(",\"\"\"" + QByteArray::fromStdString(text) + "\"\"\"\r"),
                 row.left(40));
}

void TestZoRecord::aReaderWhoPausesDoesNotHoldUpTheEnd()
{
    const FullPipe pipe;
    Program shell("bash", {"-c", "exec '" ZO_PROGRAM "' " +
                                     at(*fServer, {"record", "--period", "20", "a"}).join(' ') +
                                     " >" + pipe.path()});
    shell.start();
    const auto isRecording = [&] {
        return fServer->command({"INFO", "commandstats"}).find("_mget:") != std::string::npos;
    };
    QVERIFY(shell.waitUntil(isRecording));
    shell.signal(SIGTERM);
    QCOMPARE(shell.waitForExit(), 1);
    QVERIFY2(shell.errors().contains("it does not get the last"), qPrintable(shell.errors()));
}

REGISTER_TEST(TestZoRecord, NoApplication)
#include "tst_zo_record.moc"
