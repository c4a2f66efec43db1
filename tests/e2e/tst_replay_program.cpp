// SPDX-License-Identifier: MIT
#include "robot_program.h"
#include "support/files.h"
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"
#include "support/zo_program.h"

#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <optional>

namespace {

/// A robot that plays a recording, and whose memory is open to everybody.
class PlayingRobot : public RobotProgram
{
public:
    explicit PlayingRobot(const QStringList& words) : RobotProgram(QStringList{"--open"} + words) {}

    bool startPlaying()
    {
        if (!startAndWait())
            return false;
        fMemory.emplace(memory(""));
        return true;
    }
    ZoValue value(const std::string& key) { return fMemory->getListData(requestFor({key}))[0]; }
    bool comesTo(const std::string& key, const ZoValue& wanted)
    {
        return waitUntil([&] { return value(key) == wanted; });
    }
    void control(const std::string& command) { fMemory->setData("Replay/Control", command); }

private:
    std::optional<ZoMemoryProxy> fMemory;
};

/// The rows of a table without their times, each that is the same as the one before it left out.
QStringList stepsOf(const QByteArray& table)
{
    QStringList steps;
    for (const QByteArray& row : table.split('\n')) {
        const QString cells = QString::fromUtf8(row.mid(row.indexOf(',') + 1));
        if (!row.isEmpty() && (steps.isEmpty() || steps.last() != cells))
            steps += cells;
    }
    return steps;
}

/// A recording of steps that differ, of every type and with awkward texts.
QByteArray awkwardTable(int steps)
{
    QByteArray table = "time,Number,\"Text, odd\",Array,Sometimes,Bytes\r\n";
    for (int i = 0; i < steps; ++i) {
        const QByteArray number = QByteArray::number(i);
        table += QByteArray::number(1700000000 + i * 0.15, 'f', 3) + "," + number +
                 ".5,\"\"\"a, \\\"\"" + number + "\\\"\"\\n\"\"\",\"[" + number +
                 ",\"\"x\"\",[]]\"," +
                 (i % 3 == 0   ? ""
                  : i % 3 == 1 ? "NaN"
                               : "true") +
                 ",\"\"\"\\udcff" + number + "\"\"\"\r\n";
    }
    return table;
}

} // namespace

/// Recordings played by the simulated robot, as their users do.
class TestReplayProgram : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void aRecordingOfItIsTheSameRecording_data();
    void aRecordingOfItIsTheSameRecording();
    void aSimulatedRobotIsRecordedAndPlayed();
    void itIsControlledByAKey();
    void itIsControlledByTheCommand();
    void onlyARobotThatPlaysIsControlled();
    void onlyACommandOfItsOwnIsWithdrawn();
    void aCommandForAnEarlierOneIsNotObeyed();
    void itNeedsFewRights();
    void itsEndAndACutRowAreTold();
    void itPublishesToAGivenServerAndComesBackToIt();
    void itEndsWithoutItsServer();
    void aFileThatIsNoRecordingEndsIt();

private:
    QString path(const QString& name) const { return fFolder->filePath(name); }

    std::unique_ptr<QTemporaryDir> fFolder;
};

void TestReplayProgram::init()
{
    fFolder = std::make_unique<QTemporaryDir>();
}

void TestReplayProgram::aRecordingOfItIsTheSameRecording_data()
{
    QTest::addColumn<bool>("asChanges");
    QTest::newRow("table") << false;
    QTest::newRow("changes") << true;
}

void TestReplayProgram::aRecordingOfItIsTheSameRecording()
{
    QFETCH(bool, asChanges);
    const QByteArray table = awkwardTable(12);
    writeBytes(path("first.csv"), table);
    QString played = path("first.csv");
    for (const QString& again : {QString("second.csv"), QString("third.csv")}) {
        PlayingRobot robot({"--paused", "--replay", played});
        QVERIFY(robot.startPlaying());
        // A table as the last one, to compare; before it, the form under test.
        const QStringList form =
            asChanges && again == "second.csv" ? QStringList{"--changes"} : QStringList{};
        ZoProgram zo(QStringList{"--connect", robot.address(), "record", "--period", "10",
                                 "--output", path(again), "Number", "Text, odd", "Array",
                                 "Sometimes", "Bytes"} +
                     form);
        QVERIFY(zo.waitUntil([&] { return bytesOf(path(again)).count('\n') > 1; }));
        robot.control("play");
        QVERIFY(robot.comesTo("Replay/State", "ended"));
        const QByteArray last = table.mid(table.lastIndexOf("\\udcff"));
        QVERIFY(zo.waitUntil([&] { return bytesOf(path(again)).endsWith(last); }));
        zo.signal(SIGINT);
        QCOMPARE(zo.waitForExit(), 0);
        played = path(again);
    }
    QCOMPARE(stepsOf(bytesOf(path("third.csv"))), stepsOf(table));
}

void TestReplayProgram::aSimulatedRobotIsRecordedAndPlayed()
{
    RobotProgram robot({"--open", "--rate", "20"});
    QVERIFY(robot.startAndWait());
    const QStringList words{"record", "--all", "--period", "50",
                            "--for",  "500ms", "--output", path("a.csv")};
    QCOMPARE(run(QStringList{"--connect", robot.address()} + words).status, 0);
    const QList<QByteArray> rows = bytesOf(path("a.csv")).split('\n');
    PlayingRobot again({"--speed", "100", "--replay", path("a.csv")});
    QVERIFY(again.startPlaying());
    QVERIFY(again.comesTo("Replay/State", "ended"));
    const QStringList once{"record", "--for", "1ms", "--all"};
    const Ended ended = run(QStringList{"--connect", again.address()} + once);
    // Its own keys come beside those of the robot.
    const QList<QByteArray> cells = ended.output.split('\n')[1].split(',');
    const QList<QByteArray> last = rows[rows.size() - 2].trimmed().split(',');
    for (const QByteArray& cell : last.mid(1))
        QVERIFY2(cells.contains(cell) || cells.contains(cell + "\r"), cell);
}

void TestReplayProgram::itIsControlledByAKey()
{
    writeBytes(path("a.csv"), awkwardTable(1000));
    PlayingRobot robot({"--replay", path("a.csv"), "--from", "60s", "--paused"});
    QVERIFY(robot.startPlaying());
    QVERIFY(robot.value("Number") == ZoValue(400.5));
    robot.control("step 3");
    QVERIFY(robot.comesTo("Number", 403.5));
    robot.control("jump 15s");
    QVERIFY(robot.comesTo("Number", 100.5));
    QVERIFY(robot.value("Replay/State") == ZoValue("paused"));
    robot.control("speed 2");
    QVERIFY(robot.comesTo("Replay/Speed", 2.0));
    robot.control("play");
    QVERIFY(robot.comesTo("Replay/State", "playing"));
    robot.control("pause");
    QVERIFY(robot.comesTo("Replay/State", "paused"));
    robot.control("fly");
    QVERIFY(robot.waitForError("tarvek-robot: Replay/Control is no command: 'fly'"));
    QVERIFY(robot.comesTo("Replay/Control", ZoValue()));
    robot.signal(SIGTERM);
    QCOMPARE(robot.waitForExit(), 0);
}

void TestReplayProgram::itIsControlledByTheCommand()
{
    writeBytes(path("a.csv"), awkwardTable(1000));
    PlayingRobot robot({"--replay", path("a.csv"), "--paused"});
    QVERIFY(robot.startPlaying());
    const auto control = [&robot](const QStringList& words) {
        return run(QStringList{"--connect", robot.address(), "replay-control"} + words);
    };
    for (const QStringList& words : {QStringList{"step"}, {"step"}, {"step"}, {"step", "10"}})
        QCOMPARE(control(words).status, 0); // none takes the place of the one before
    QVERIFY(robot.comesTo("Number", 13.5));
    QCOMPARE(control({"jump", "-150ms"}).status, 0);
    QCOMPARE(control({"speed", "2"}).status, 0);
    QVERIFY(robot.comesTo("Replay/Speed", 2.0));
    QVERIFY(robot.value("Number") == ZoValue(12.5));
    QCOMPARE(control({"status"}).output,
             QByteArray("Replay/State\tstring\tpaused\nReplay/Time\tfloat\t1700000001.8\n"
                        "Replay/Speed\tfloat\t2\n"));
    const Ended wrong = control({"fly"});
    QCOMPARE(wrong.status, 2);
    QVERIFY2(wrong.errors.contains("no command for a replay"), wrong.errors);
}

void TestReplayProgram::onlyARobotThatPlaysIsControlled()
{
    const RedisServer server;
    const Ended none = run(at(server, {"replay-control", "pause"}));
    QCOMPARE(none.status, 1);
    QVERIFY2(none.errors.contains("this robot plays no recording"), none.errors);
    server.command({"SET", "Replay/State", "paused"}); // as one that has died leaves it
    const Ended dead = run(at(server, {"replay-control", "pause"}));
    QCOMPARE(dead.status, 1);
    QVERIFY2(dead.errors.contains("which is withdrawn"), dead.errors);
    QCOMPARE(server.command({"GET", "Replay/Control"}), std::string("null"));
    server.command({"SET", "Replay/Control", "play"});
    const Ended blocked = run(at(server, {"replay-control", "pause"}));
    QCOMPARE(blocked.status, 1);
    QVERIFY2(blocked.errors.contains("that was there before"), blocked.errors);
    QCOMPARE(server.command({"GET", "Replay/Control"}), std::string("play"));
}

void TestReplayProgram::onlyACommandOfItsOwnIsWithdrawn()
{
    const RedisServer server;
    server.command({"SET", "Replay/State", "paused"});
    ZoProgram zo(at(server, {"replay-control", "pause"}));
    QVERIFY(zo.waitUntil([&] { return server.command({"GET", "Replay/Control"}) == "pause"; }));
    server.command({"SET", "Replay/Control", "play"}); // by somebody who does not wait
    QCOMPARE(endOf(zo).status, 1);
    QCOMPARE(server.command({"GET", "Replay/Control"}), std::string("play"));
}

void TestReplayProgram::aCommandForAnEarlierOneIsNotObeyed()
{
    writeBytes(path("a.csv"), awkwardTable(10));
    const RedisServer server;
    server.command({"SET", "Replay/Control", "step 3"});
    Program robot(TARVEK_ROBOT,
                  {"--connect", addressOf(server), "--paused", "--replay", path("a.csv")});
    robot.start();
    QVERIFY(!robot.waitForLine("publishing to ").isNull());
    QCOMPARE(server.command({"GET", "Replay/Control"}), std::string("null"));
    QCOMPARE(run(at(server, {"replay-control", "step"})).status, 0);
    TRY_VERIFY(server.command({"GET", "Number"}) == "1.5");
}

void TestReplayProgram::itNeedsFewRights()
{
    writeBytes(path("a.csv"), awkwardTable(10));
    writeBytes(path("password"), "secret\n");
    QFile::setPermissions(path("password"), QFile::ReadOwner | QFile::WriteOwner);
    const RedisServer server;
    server.command({"ACL", "SETUSER", "player", "on", ">secret", "~*", "-@all", "+ping", "+set",
                    "+mset", "+mget", "+getset"});
    server.command({"ACL", "SETUSER", "remote", "on", ">secret", "%R~Replay/*", "%W~Replay/Control",
                    "-@all", "+ping", "+mget", "+set"});
    const auto as = [&](const QString& user, const QStringList& words) {
        return at(server, QStringList{"--user", user, "--password-file", path("password")} + words);
    };
    Program robot(TARVEK_ROBOT, as("player", {"--paused", "--replay", path("a.csv")}));
    robot.start();
    QVERIFY(!robot.waitForLine("publishing to ").isNull());
    const Ended ended = run(as("remote", {"replay-control", "step"}));
    QCOMPARE(ended.errors, QByteArray());
    QCOMPARE(ended.status, 0);
    TRY_VERIFY(server.command({"GET", "Number"}) == "1.5");
    QCOMPARE(robot.errors(), QString());
}

void TestReplayProgram::itsEndAndACutRowAreTold()
{
    const QByteArray table = awkwardTable(3);
    writeBytes(path("a.csv"), table.left(table.size() - 4));
    PlayingRobot robot({"--replay", path("a.csv")});
    QVERIFY(robot.startPlaying());
    QVERIFY(robot.waitForError("has ended within row 4, which is left out"));
    QVERIFY(robot.value("Number") == ZoValue(1.5));
    QCOMPARE(robot.errors().count('\n'), 1);
}

void TestReplayProgram::itPublishesToAGivenServerAndComesBackToIt()
{
    writeBytes(path("a.csv"), awkwardTable(4));
    RedisServer server;
    Program robot(TARVEK_ROBOT,
                  {"--connect", addressOf(server), "--replay", path("a.csv"), "--loop"});
    robot.start();
    QVERIFY(!robot.waitForLine("publishing to ").isNull());
    server.kill();
    QVERIFY(robot.waitForError("Trying again."));
    server.restart();
    QVERIFY(robot.waitForError("publishing again."));
    TRY_VERIFY(!server.command({"GET", "Array"}).empty());
    TRY_VERIFY(!server.command({"GET", "Replay/Time"}).empty());
    QCOMPARE(server.command({"GET", "Replay/State"}), std::string("\"playing\""));
    robot.signal(SIGINT);
    QCOMPARE(robot.waitForExit(), 0);
    QCOMPARE(server.command({"GET", "Replay/State"}), std::string("null"));
}

void TestReplayProgram::itEndsWithoutItsServer()
{
    writeBytes(path("a.csv"), awkwardTable(4));
    RedisServer server;
    Program robot(TARVEK_ROBOT, {"--connect", addressOf(server), "--replay", path("a.csv")});
    robot.start();
    QVERIFY(!robot.waitForLine("publishing to ").isNull());
    server.kill();
    QVERIFY(robot.waitForError("Trying again."));
    robot.signal(SIGINT);
    QCOMPARE(robot.waitForExit(), 0);
}

void TestReplayProgram::aFileThatIsNoRecordingEndsIt()
{
    const auto errorsOf = [](const QString& file) {
        Program robot(TARVEK_ROBOT, {"--open", "--replay", file});
        robot.start();
        return endOf(robot);
    };
    const Ended none = errorsOf(path("none.csv"));
    QCOMPARE(none.status, 1);
    QVERIFY2(none.errors.contains("none.csv': No such file"), none.errors);
    writeBytes(path("a.csv"), "<stm_viewer/>\n");
    const Ended other = errorsOf(path("a.csv"));
    QCOMPARE(other.status, 1);
    QVERIFY2(other.errors.contains("is this a recording of zo record, "), other.errors);
    QCOMPARE(other.output, QByteArray());
}

REGISTER_TEST(TestReplayProgram, QCoreApplication)
#include "tst_replay_program.moc"
