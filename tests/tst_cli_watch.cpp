#include "support/guarded_test.h"

#include <output.h>
#include <watch.h>

#include <zo/zo.h>

#include <boost/make_shared.hpp>

#include <QTemporaryFile>
#include <QtTest>

#include <csignal>
#include <unistd.h>

using namespace std::chrono_literals;

/// How the program `zo` watches a robot.
class TestCliWatch : public GuardedTest
{
    Q_OBJECT

private slots:
    void secondsHaveThreeDecimals();
    void everyPollPrintsEveryKey();
    void aLateAnswerDoesNotShiftThePollsAfterIt();
    void aLostRobotIsToldOnceAndItsReturnOnce();
    void aWrongNumberOfValuesIsNoAnswer();
    void anEarlyWaitIsNotCutShort();
    void aClosedOutputEndsTheWait();
};

namespace {

/// A robot that does what a test wants on each call, counted from 0.
class ScriptedRobot : public ZoProxy
{
public:
    using Script = std::function<ZoValue(int call)>;
    explicit ScriptedRobot(Script script) : fScript(std::move(script)) {}
    ZoValue call(const std::string& method, const ZoValue& arguments) override
    {
        Q_UNUSED(method);
        Q_UNUSED(arguments);
        return fScript(fCalls++);
    }

private:
    Script fScript;
    int fCalls = 0;
};

struct Watched
{
    QStringList lines;
    QStringList messages;
};

Watched watched(const boost::shared_ptr<ZoProxy>& robot, const Watch& watch)
{
    Watched seen;
    QTemporaryFile file;
    file.open();
    Output output(file.handle());
    ZoMemoryProxy memory(robot);
    watchValues(memory, watch, output, [&seen](const std::string& message) {
        seen.messages += QString::fromStdString(message);
    });
    file.seek(0);
    seen.lines = QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts);
    return seen;
}

ZoValue oneValue(const ZoValue& value)
{
    return ZoValue::fromElements({value});
}

int millisecondsIn(const QString& line)
{
    return qRound(line.section('\t', 0, 0).toDouble() * 1000);
}

} // namespace

void TestCliWatch::secondsHaveThreeDecimals()
{
    QCOMPARE(secondsText(0ms), std::string("0.000"));
    QCOMPARE(secondsText(7ms), std::string("0.007"));
    QCOMPARE(secondsText(60ms), std::string("0.060"));
    QCOMPARE(secondsText(123456789ms), std::string("123456.789"));
}

void TestCliWatch::everyPollPrintsEveryKey()
{
    const auto broker = ZoBroker::create("test");
    ZoMemoryProxy(broker).setData("a", 0.5);
    const Watched seen = watched(broker->getLocalMemory(), {{"a", "b\n"}, 1ms, 3});
    QCOMPARE(seen.lines.size(), 6);
    for (int i = 0; i < 6; ++i)
        QCOMPARE(seen.lines[i].section('\t', 1),
                 QString(i % 2 == 0 ? "a\tfloat\t0.5" : "b\\n\tinvalid\t"));
    QVERIFY(seen.messages.isEmpty());
}

void TestCliWatch::aLateAnswerDoesNotShiftThePollsAfterIt()
{
    constexpr auto period = 20ms;
    const auto robot = boost::make_shared<ScriptedRobot>([](int call) {
        const QDeadlineTimer late(call == 1 ? 110 : 0);
        while (!late.hasExpired())
            QThread::yieldCurrentThread();
        return oneValue(call);
    });
    const Watched seen = watched(robot, {{"a"}, period, 4});
    QCOMPARE(seen.lines.size(), 4);
    // The ticks at 40 to 120 ms are over; the next poll waits for a later one, and comes once.
    QVERIFY2(millisecondsIn(seen.lines[2]) >= 140, qPrintable(seen.lines[2]));
    QVERIFY2(millisecondsIn(seen.lines[3]) >= 160, qPrintable(seen.lines[3]));
}

void TestCliWatch::aLostRobotIsToldOnceAndItsReturnOnce()
{
    const auto robot = boost::make_shared<ScriptedRobot>([](int call) {
        if ((call >= 1 && call < 5) || call == 6)
            throw ZoError("no answer");
        return oneValue(call);
    });
    const Watched seen = watched(robot, {{"a"}, 1ms, 3});
    QCOMPARE(seen.lines.size(), 3);
    QVERIFY(seen.lines[1].endsWith("\t5"));
    QCOMPARE(seen.messages, (QStringList{"the robot is lost: no answer", "the robot is back",
                                         "the robot is lost: no answer", "the robot is back"}));
}

void TestCliWatch::aWrongNumberOfValuesIsNoAnswer()
{
    const auto robot = boost::make_shared<ScriptedRobot>(
        [](int call) { return call == 0 ? ZoValue() : oneValue(call); });
    const Watched seen = watched(robot, {{"a"}, 1ms, 1});
    QCOMPARE(seen.lines.size(), 1);
    QCOMPARE(seen.messages.size(), 2);
    QVERIFY2(seen.messages[0].contains("0 values for 1 keys"), qPrintable(seen.messages[0]));
}

void TestCliWatch::anEarlyWaitIsNotCutShort()
{
    QTemporaryFile file;
    file.open();
    const auto then = std::chrono::steady_clock::now() + 30ms;
    Output(file.handle()).waitUntil(then);
    QVERIFY(std::chrono::steady_clock::now() >= then);
    Output(file.handle()).waitUntil(then - 1s);
}

void TestCliWatch::aClosedOutputEndsTheWait()
{
    int ends[2] = {-1, -1};
    QCOMPARE(::pipe(ends), 0);
    ::close(ends[0]);
    std::signal(SIGPIPE, SIG_IGN);
    Output output(ends[1]);
    const auto farAway = std::chrono::steady_clock::now() + 1h;
    QVERIFY_EXCEPTION_THROWN(output.waitUntil(farAway), OutputClosed);
    output.add("text");
    QVERIFY_EXCEPTION_THROWN(output.flush(), OutputClosed);
    ::close(ends[1]);
    QVERIFY_EXCEPTION_THROWN(output.flush(), OutputError);
}

QTEST_APPLESS_MAIN(TestCliWatch)
#include "tst_cli_watch.moc"
