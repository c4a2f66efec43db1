// SPDX-License-Identifier: MIT
#include "support/fake_robot.h"
#include "support/full_pipe.h"
#include "support/guarded_test.h"
#include "support/record_bench.h"
#include "support/register_test.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <atomic>
#include <csignal>

/// What `zo record` tells the program that started it.
class TestRecordStatus : public GuardedTest, private RecordBench
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void whatIsStillBeginningIsEnded_data();
    void whatIsStillBeginningIsEnded();
    void aProgramIsToldHowItIsGettingOn();
    void nothingIsReadyToTellAProgramUnasked();
    void aBeginningThatFailsIsToldToAProgram();
    void aReaderOfItsStateThatIsGoneEndsItWell();
    void aReaderOfItsStateThatDoesNotReadHoldsUpNothing();
};

namespace {

/// The object in the last whole line of `output`.
QJsonObject lastObjectIn(const QByteArray& output)
{
    const QByteArray lines = output.left(output.lastIndexOf('\n'));
    return QJsonDocument::fromJson(lines.mid(lines.lastIndexOf('\n') + 1)).object();
}

QString stateIn(const QByteArray& output)
{
    return lastObjectIn(output)["state"].toString();
}

} // namespace

void TestRecordStatus::whatIsStillBeginningIsEnded_data()
{
    QTest::addColumn<bool>("answersFirst");
    QTest::addColumn<bool>("hasReader");
    QTest::newRow("connecting, signal") << false << true;
    QTest::newRow("connecting, reader gone") << false << false;
    QTest::newRow("list of keys, signal") << true << true;
    QTest::newRow("list of keys, reader gone") << true << false;
}

void TestRecordStatus::whatIsStillBeginningIsEnded()
{
    QFETCH(bool, answersFirst);
    QFETCH(bool, hasReader);
    std::atomic<bool> waits{false};
    const FakeRobot robot([&](FakeConnection& connection) {
        if (answersFirst)
            connection.greet();
        connection.readCommand();
        waits = true;
        connection.waitForEnd();
    });
    const QString record = QString("'" ZO_PROGRAM "' --connect 127.0.0.1:%1 --timeout 20000 record "
                                   "--all --status --output %2")
                               .arg(QString::number(robot.port()), path());
    Program shell("bash",
                  {"-c", hasReader ? "exec " + record : record + " | true; exit ${PIPESTATUS[0]}"});
    shell.start();
    if (hasReader) {
        QVERIFY(shell.waitUntil([&] { return waits.load(); }));
        shell.signal(SIGTERM);
    }
    QCOMPARE(shell.waitForExit(), 0);
    QCOMPARE(shell.errors(), QString());
    QVERIFY(!QFile::exists(path()));
    if (hasReader)
        QCOMPARE(stateIn(shell.output()), QString("ended"));
}

void TestRecordStatus::aProgramIsToldHowItIsGettingOn()
{
    ZoProgram zo(recording({"--status", "--period", "50", "a", "slip"}));
    QVERIFY(zo.waitUntil([&] { return stateIn(zo.output()) == "recording"; }));
    fServer->kill();
    QVERIFY(zo.waitUntil([&] { return stateIn(zo.output()) == "waiting"; }));
    QVERIFY(!lastObjectIn(zo.output())["cause"].toString().isEmpty());
    fServer->restart();
    QVERIFY(zo.waitUntil([&] { return stateIn(zo.output()) == "recording"; }));
    zo.signal(SIGTERM);
    QCOMPARE(zo.waitForExit(), 0);
    const QJsonObject last = lastObjectIn(zo.output());
    QCOMPARE(last["state"].toString(), QString("ended"));
    QCOMPARE(last["cause"].toString(), QString());
    QCOMPARE(last["file"].toString(), path());
    QCOMPARE(last["rows"].toInt(), lines().size() - 1);
    QCOMPARE(last["bytes"].toInt(), bytesOf(path()).size());
    QVERIFY(last["missed"].toInt() > 0);
    QCOMPARE(last["empty"].toInt(), 1);
    QVERIFY2(!zo.errors().contains("slip"), qPrintable(zo.errors()));
    QVERIFY(last["free"].toDouble() > 0);
    QVERIFY(last["age"].toInt(-1) >= 0);
}

void TestRecordStatus::nothingIsReadyToTellAProgramUnasked()
{
    const auto threadsOf = [this](const QStringList& more) {
        ZoProgram zo(recording(QStringList{"--period", "20", "a"} + more));
        const auto rows = lines().size() + 2;
        zo.waitUntil([&] { return lines().size() > rows; });
        const QDir threads(QString("/proc/%1/task").arg(zo.processId()));
        const auto count = threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
        zo.signal(SIGTERM);
        zo.waitForExit();
        return count;
    };
    const auto asked = threadsOf({"--status"});
    QVERIFY(asked > 1);
    QCOMPARE(threadsOf({}), asked - 1);
}

void TestRecordStatus::aBeginningThatFailsIsToldToAProgram()
{
    writeBytes(path(), "mine");
    const Ended ended = run(recording({"--status", "a"}));
    QCOMPARE(ended.status, 1);
    QCOMPARE(linesIn(ended.output), 1);
    QCOMPARE(stateIn(ended.output), QString("ended"));
    QVERIFY(lastObjectIn(ended.output)["cause"].toString().contains("is there already"));
}

void TestRecordStatus::aReaderOfItsStateThatIsGoneEndsItWell()
{
    const QString command = "'" ZO_PROGRAM "' " +
                            recording({"--status", "--period", "3600000", "a"}).join(' ') +
                            " | head -n 1 | wc -l; exit ${PIPESTATUS[0]}";
    Program shell("bash", {"-c", command});
    shell.start();
    const Ended ended = endOf(shell);
    QCOMPARE(ended.output + ended.errors, QByteArray("1\n"));
    QCOMPARE(ended.status, 0);
    QCOMPARE(lines().size(), 2);
}

void TestRecordStatus::aReaderOfItsStateThatDoesNotReadHoldsUpNothing()
{
    const FullPipe pipe;
    Program shell("bash", {"-c", "exec '" ZO_PROGRAM "' " +
                                     recording({"--status", "--period", "20", "a"}).join(' ') +
                                     " >" + pipe.path()});
    shell.start();
    QVERIFY(shell.waitUntil([&] { return lines().size() > 5; }));
    shell.signal(SIGTERM);
    QCOMPARE(shell.waitForExit(), 0);
    QVERIFY(bytesOf(path()).endsWith("\r\n"));
}

REGISTER_TEST(TestRecordStatus, NoApplication)
#include "tst_record_status.moc"
