// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <kit/output.h>

#include <watch.h>

#include <zo/zo.h>

#include <boost/make_shared.hpp>

#include <QTemporaryFile>
#include <QtTest>

using namespace std::chrono_literals;
using kit::Output;

/// How the program `zo` watches a robot.
class TestCliWatch : public GuardedTest
{
    Q_OBJECT

private slots:
    void everyPollPrintsEveryKey();
    void pollsStandOnAGridHoweverLateEachIs();
    void aPollIsNotMadeUpFor();
    void aTickOnWhichAnAnswerEndsIsOver();
    void aLostRobotIsToldOnceAndItsReturnOnce();
    void aWrongNumberOfValuesIsNoAnswer();
    void aRobotThatRefusesIsNotWaitedFor();
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

ZoLinkStatus goodLink()
{
    ZoLinkStatus link;
    link.connected = true;
    return link;
}

struct Watched
{
    QStringList lines;
    QStringList messages;
};

Watched watched(const boost::shared_ptr<ZoProxy>& robot, const Watch& watch,
                const WatchTime& time = realTime(),
                const std::function<ZoLinkStatus()>& link = goodLink)
{
    Watched seen;
    QTemporaryFile file;
    file.open();
    Output output(file.handle());
    WatchedRobot watchedRobot{ZoMemoryProxy(robot), link};
    const auto tell = [&seen](const std::string& message) {
        seen.messages += QString::fromStdString(message);
    };
    watchValues(watchedRobot, watch, output, tell, time);
    file.seek(0);
    seen.lines = QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts);
    return seen;
}

ZoValue oneValue(const ZoValue& value)
{
    return ZoValue::fromElements({value});
}

/// A time that passes only where a test says so.
class VirtualTime
{
public:
    std::chrono::milliseconds lateness{0}; ///< of each return from a wait

    void pass(std::chrono::milliseconds time) { fNow += time; }

    WatchTime face()
    {
        return {[this] { return fNow; },
                [this](const Output&, WatchTime::Point then) { fNow = then + lateness; }};
    }

private:
    WatchTime::Point fNow{1h};
};

QStringList seconds(const Watched& seen)
{
    QStringList times;
    for (const QString& line : seen.lines)
        times += line.section('\t', 0, 0);
    return times;
}

} // namespace

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

void TestCliWatch::pollsStandOnAGridHoweverLateEachIs()
{
    VirtualTime time;
    time.lateness = 7ms;
    const auto robot = boost::make_shared<ScriptedRobot>([&time](int call) {
        time.pass(20ms);
        return oneValue(call);
    });
    const Watched seen = watched(robot, {{"a"}, 100ms, 5}, time.face());
    QCOMPARE(seconds(seen), (QStringList{"0.000", "0.107", "0.207", "0.307", "0.407"}));
}

void TestCliWatch::aPollIsNotMadeUpFor()
{
    VirtualTime time;
    const auto robot = boost::make_shared<ScriptedRobot>([&time](int call) {
        time.pass(call == 1 ? 350ms : 0ms); // over are the ticks at 200, 300 and 400 ms
        return oneValue(call);
    });
    const Watched seen = watched(robot, {{"a"}, 100ms, 4}, time.face());
    QCOMPARE(seconds(seen), (QStringList{"0.000", "0.100", "0.500", "0.600"}));
}

void TestCliWatch::aTickOnWhichAnAnswerEndsIsOver()
{
    VirtualTime time;
    const auto robot = boost::make_shared<ScriptedRobot>([&time](int call) {
        time.pass(call == 0 ? 99ms : 100ms);
        return oneValue(call);
    });
    const Watched seen = watched(robot, {{"a"}, 100ms, 4}, time.face());
    QCOMPARE(seconds(seen), (QStringList{"0.000", "0.100", "0.300", "0.500"}));
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

void TestCliWatch::aRobotThatRefusesIsNotWaitedFor()
{
    bool refused = false;
    const auto robot = boost::make_shared<ScriptedRobot>([&refused](int call) {
        refused = call == 3;
        if (call > 0)
            throw ZoError("connection lost");
        return oneValue(call);
    });
    const auto link = [&refused] {
        ZoLinkStatus status;
        status.refused = refused;
        status.cause = "who are you?";
        return status;
    };
    try {
        watched(robot, {{"a"}, 1ms, 0}, realTime(), link);
        QFAIL("it went on");
    } catch (const ZoError& error) {
        QCOMPARE(error.toString(), std::string("who are you?"));
    }
}

REGISTER_TEST(TestCliWatch, NoApplication)
#include "tst_cli_watch.moc"
