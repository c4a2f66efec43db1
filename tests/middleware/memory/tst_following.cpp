// SPDX-License-Identifier: MIT
#include "support/alice.h"
#include "support/fake_robot.h"
#include "support/following.h"
#include "support/guarded_test.h"
#include "support/redis_server.h"
#include "support/register_test.h"
#include "support/together.h"
#include "support/watched_thread.h"

#include <QtTest>

#include <atomic>
#include <optional>
#include <thread>

/// Lists that are asked for again and again, over a link to a real server.
class TestFollowing : public GuardedTest
{
    Q_OBJECT

private slots:
    void itShowsWhatIsWritten();
    void itAsksNoMoreOftenThanItIsAsked();
    void itShowsTheLinksOwnWrites();
    void keysRepeatAsAsked();
    void whatTheRobotDoesNotGiveIsInvalidAlone();
    void aTooLargeValueIsInvalidAlone();
    void aListWithoutKeysIsAnsweredAtOnce();
    void aMalformedRequestIsRefused();
    void aForbiddenCommandIsNamed();
    void aListLongerThanACommandIsWhole();
    void noCallWaitsForARobotThatHangs();
    void onlyTheFirstCallWaitsForASlowRobot();
    void itGoesOnAfterALoss();
    void noCallWaitsForARobotThatIsBack();
    void manyThreadsShareOneProxy();
    void oneMayCallWhileAnotherReconnects();
    void withoutItEachCallReadsTheRobot();
    void anAnswerTellsWhenItCameAndWhatHasChanged_data();
    void anAnswerTellsWhenItCameAndWhatHasChanged();
    void theSameAnswerKeepsItsTime();
    void anAnswerAfterALossIsComparedWithTheOneBefore();
};

namespace {

/// Asks like a panel until `isIt` holds for what is told.
template <class Condition>
bool answers(ZoMemoryProxy& memory, const ZoValue& request, Condition isIt)
{
    std::optional<ZoListAnswer> answer;
    const auto ask = [&] {
        try {
            answer = memory.getListAnswer(request);
        } catch (const ZoUnderWay&) {
            answer.reset();
        }
        return answer && isIt(*answer);
    };
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(patience);
    while (!ask()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        pauseAsAPanelDoes();
    }
    return true;
}

} // namespace

void TestFollowing::itShowsWhatIsWritten()
{
    const RedisServer server;
    server.command({"MSET", "Arm/A", "1", "Arm/B", "true"});
    ZoMemoryProxy memory = memoryOf(linkTo(server.port(), following()));
    const ZoValue request = requestFor({"Arm/A", "Arm/B"});
    QVERIFY(memory.getListData(request)[0] == ZoValue(1)); // the first call waits
    for (int value = 2; value < 20; ++value) {
        server.command({"SET", "Arm/A", std::to_string(value)});
        QVERIFY(polls(memory, request, [&](const ZoValue& values) {
            return values[0] == ZoValue(value) && values[1] == ZoValue(true);
        }));
    }
}

void TestFollowing::itAsksNoMoreOftenThanItIsAsked()
{
    const RedisServer server;
    server.command({"SET", "Arm/A", "1"});
    ZoMemoryProxy memory = memoryOf(linkTo(server.port(), following()));
    const ZoValue request = requestFor({"Arm/A"});
    int answers = 0;
    for (int calls = 1; calls <= 50; ++calls) {
        answers += tried(memory, request) ? 1 : 0;
        pauseAsAPanelDoes();
        const int asked = answeredCommands(server, "mget");
        QVERIFY2(asked <= calls, std::to_string(asked).c_str());
    }
    QVERIFY(answers > 0 && answeredCommands(server, "mget") > 1);
}

void TestFollowing::itShowsTheLinksOwnWrites()
{
    const RedisServer server;
    ZoMemoryProxy memory = memoryOf(linkTo(server.port(), following()));
    const ZoValue request = requestFor({"Arm/A", "Arm/B"});
    for (int value = 1; value < 100; ++value) {
        memory.setData("Arm/A", value);
        std::optional<ZoValue> shown;
        QVERIFY(polls(memory, request, [&](const ZoValue& values) {
            shown = values;
            return true;
        }));
        QVERIFY((*shown)[0] == ZoValue(value));
    }
}

void TestFollowing::keysRepeatAsAsked()
{
    const RedisServer server;
    server.command({"MSET", "Arm/A", "1", "Arm/B", "2"});
    ZoMemoryProxy memory = memoryOf(linkTo(server.port(), following()));
    const ZoValue request = requestFor({"Arm/B", "Arm/A", "Arm/B", std::string(70000, 'k')});
    int answers = 0;
    QVERIFY(polls(memory, request, [&](const ZoValue& values) {
        return values == ZoValue::fromElements({ZoValue(2), ZoValue(1), ZoValue(2), ZoValue()}) &&
               ++answers == 10;
    }));
}

void TestFollowing::whatTheRobotDoesNotGiveIsInvalidAlone()
{
    const RedisServer server(withAlice("~Arm/* +@all"));
    server.command({"MSET", "Arm/A", "1", "Leg/A", "2"});
    ZoMemoryProxy memory = memoryOf(linkTo(server.port(), asAlice(following())));
    const ZoValue request = requestFor({"Arm/A", "Leg/A", "Arm/None"});
    int answers = 0;
    QVERIFY(polls(memory, request, [&](const ZoValue& values) {
        return values == ZoValue::fromElements({ZoValue(1), ZoValue(), ZoValue()}) &&
               ++answers == 10;
    }));
}

void TestFollowing::aTooLargeValueIsInvalidAlone()
{
    const RedisServer server;
    server.command({"MSET", "Arm/A", "1", "Arm/Large", std::string((1 << 20) + 1, 'x')});
    ZoMemoryProxy memory = memoryOf(linkTo(server.port(), following()));
    const ZoValue request = requestFor({"Arm/A", "Arm/Large"});
    int answers = 0;
    QVERIFY(polls(memory, request, [&](const ZoValue& values) {
        return values == ZoValue::fromElements({ZoValue(1), ZoValue()}) && ++answers == 10;
    }));
    server.command({"SET", "Arm/Large", "2"}); // which it asks for again after a pause
    QVERIFY(polls(memory, request, [](const ZoValue& values) { return values[1] == ZoValue(2); }));
}

void TestFollowing::aListWithoutKeysIsAnsweredAtOnce()
{
    const RedisServer server;
    ZoMemoryProxy memory = memoryOf(linkTo(server.port(), following()));
    for (const ZoValue& request : {requestFor({}), requestFor({std::string(70000, 'k')})}) {
        int answers = 0;
        QVERIFY(polls(memory, request, [&](const ZoValue& values) {
            return values.getSize() == request.getSize() && ++answers == 10;
        }));
    }
    QCOMPARE(answeredCommands(server, "mget"), 0);
}

void TestFollowing::aMalformedRequestIsRefused()
{
    const RedisServer server;
    ZoMemoryProxy memory = memoryOf(linkTo(server.port(), following()));
    QVERIFY(contains(errorOf([&] { memory.getListData(ZoValue(3)); }), "is no array"));
}

void TestFollowing::aForbiddenCommandIsNamed()
{
    const RedisServer server(withAlice("~* +@all -mget"));
    ZoMemoryProxy memory = memoryOf(linkTo(server.port(), asAlice(following())));
    const std::string error = errorOf([&] { memory.getListData(requestFor({"Arm/A"})); });
    QVERIFY2(contains(error, "refuses MGET: NOPERM"), error.c_str());
}

void TestFollowing::aListLongerThanACommandIsWhole()
{
    const RedisServer server;
    std::vector<std::string> keys;
    std::vector<std::string> words{"MSET"};
    for (int i = 0; i < 2500; ++i) {
        keys.push_back("Arm/Joint/" + std::to_string(i));
        words.insert(words.end(), {keys.back(), std::to_string(i)});
    }
    server.command(words);
    ZoMemoryProxy memory = memoryOf(linkTo(server.port(), following()));
    int answers = 0;
    QVERIFY(polls(memory, requestFor(keys), [&](const ZoValue& values) {
        int wrong = values.getSize() - 2500;
        for (int i = 0; i < values.getSize(); ++i)
            wrong += values[i] != ZoValue(i);
        return wrong == 0 && ++answers == 10;
    }));
}

void TestFollowing::noCallWaitsForARobotThatHangs()
{
    std::promise<void> isOver;
    FakeRobot robot([over = isOver.get_future().share()](FakeConnection& connection) {
        connection.greet();
        for (int round = 0; round < 5; ++round) {
            while (connection.readCommand().at(0) != "MGET") // pings come in between
                connection.send("+PONG\r\n");
            connection.send("*1\r\n$1\r\n" + std::to_string(round) + "\r\n");
        }
        over.wait();
    });
    ZoMemoryProxy memory = memoryOf(linkTo(robot.port(), following(quietOptions())));
    const ZoValue request = requestFor({"Arm/A"});
    QVERIFY(polls(memory, request, [](const ZoValue& values) { return values[0] == ZoValue(4); }));
    // Calls of the other kind wait for minutes here.
    int unanswered = 0;
    while (unanswered < 10) {
        if (!tried(memory, request))
            ++unanswered;
        pauseAsAPanelDoes();
    }
    isOver.set_value();
}

void TestFollowing::onlyTheFirstCallWaitsForASlowRobot()
{
    std::promise<void> isOver;
    FakeRobot robot([over = isOver.get_future().share()](FakeConnection& connection) {
        connection.greet();
        while (connection.readCommand().at(0) != "MGET")
            connection.send("+PONG\r\n");
        // Longer than what lies between two calls that make a rhythm.
        over.wait_for(std::chrono::milliseconds(400));
        connection.send("*1\r\n$1\r\n1\r\n");
        over.wait();
    });
    ZoMemoryProxy memory = memoryOf(linkTo(robot.port(), following(quietOptions())));
    const ZoValue request = requestFor({"Arm/A"});
    QVERIFY(memory.getListData(request)[0] == ZoValue(1));
    pauseAsAPanelDoes();
    tried(memory, request); // one that waited would do so for minutes
    isOver.set_value();
}

void TestFollowing::itGoesOnAfterALoss()
{
    const RedisServer server;
    server.command({"SET", "Arm/A", "1"});
    const auto broker = linkTo(server.port(), following());
    ZoMemoryProxy memory = memoryOf(broker);
    const ZoValue request = requestFor({"Arm/A"});
    QVERIFY(polls(memory, request, [](const ZoValue& values) { return values[0] == ZoValue(1); }));
    const auto since = broker->linkStatus().since;
    server.command({"CLIENT", "KILL", "TYPE", "normal", "SKIPME", "yes"});
    server.command({"SET", "Arm/A", "2"});
    TRY_VERIFY(broker->isConnected() && broker->linkStatus().since != since);
    QVERIFY(polls(memory, request, [](const ZoValue& values) { return values[0] == ZoValue(2); }));
}

// Who stops to ask is forgotten after a second, but not who asks while the robot is away.
void TestFollowing::noCallWaitsForARobotThatIsBack()
{
    using Clock = std::chrono::steady_clock;
    std::promise<void> isBack;
    std::promise<void> isOver;
    FakeRobot robot([back = isBack.get_future().share(),
                     over = isOver.get_future().share()](FakeConnection& connection) {
        if (connection.number() > 0)
            back.wait();
        connection.greet();
        for (int round = 0; connection.number() == 0 && round < 5; ++round) {
            while (connection.readCommand().at(0) != "MGET")
                connection.send("+PONG\r\n");
            connection.send("*1\r\n$1\r\n1\r\n");
        }
        if (connection.number() > 0)
            over.wait(); // and answers nothing
    });
    const auto broker = linkTo(robot.port(), following(quietOptions()));
    ZoMemoryProxy memory = memoryOf(broker);
    const ZoValue request = requestFor({"Arm/A"});
    const auto call = [&] {
        errorOf([&] { memory.getListData(request); });
        pauseAsAPanelDoes();
        return true;
    };
    while (broker->isConnected())
        call();
    for (const auto end = Clock::now() + std::chrono::milliseconds(1500); Clock::now() < end;)
        call();
    isBack.set_value();
    TRY_VERIFY(call() && broker->isConnected());
    // Calls of the other kind wait for minutes here.
    for (int calls = 0; calls < 10; ++calls)
        call();
    isOver.set_value();
}

void TestFollowing::manyThreadsShareOneProxy()
{
    const RedisServer server;
    server.command({"MSET", "Arm/A", "1", "Arm/B", "2", "Arm/C", "3"});
    ZoMemoryProxy memory = memoryOf(linkTo(server.port(), following()));
    std::atomic<int> good{0};
    runTogether(6, [&](int thread) {
        const ZoValue request =
            thread % 2 == 0 ? requestFor({"Arm/A", "Arm/B"}) : requestFor({"Arm/B", "Arm/C"});
        int answers = 0;
        good += polls(memory, request, [&](const ZoValue& values) {
            return values[0] == ZoValue(thread % 2 == 0 ? 1 : 2) && ++answers == 20;
        });
    });
    QCOMPARE(good.load(), 6);
}

void TestFollowing::oneMayCallWhileAnotherReconnects()
{
    const RedisServer server;
    const auto broker = linkTo(server.port(), following());
    std::atomic<bool> isOver{false};
    WatchedThread caller([&] {
        ZoMemoryProxy memory = memoryOf(broker);
        for (int list = 0; !isOver; ++list) // each is a first call, which waits for the robot
            errorOf([&] { memory.getListData(requestFor({std::to_string(list)})); });
    });
    WatchedThread user([&] {
        for (int i = 0; i < 300; ++i) {
            broker->reconnect(following());
            while (!broker->isConnected())
                std::this_thread::yield();
        }
    });
    const bool ends = user.ends();
    isOver = true;
    QVERIFY(ends);
    caller.join();
}

void TestFollowing::withoutItEachCallReadsTheRobot()
{
    const RedisServer server;
    ZoMemoryProxy memory = memoryOf(linkTo(server.port(), patientOptions()));
    for (int value = 0; value < 20; ++value) {
        server.command({"SET", "Arm/A", std::to_string(value)});
        QVERIFY(memory.getListData(requestFor({"Arm/A"}))[0] == ZoValue(value));
    }
    QCOMPARE(answeredCommands(server, "mget"), 20);
}

void TestFollowing::anAnswerTellsWhenItCameAndWhatHasChanged_data()
{
    QTest::addColumn<bool>("isFollowed");
    QTest::newRow("followed") << true;
    QTest::newRow("not followed") << false;
}

void TestFollowing::anAnswerTellsWhenItCameAndWhatHasChanged()
{
    QFETCH(bool, isFollowed);
    const RedisServer server(withAlice("~Arm/* +@all"));
    server.command({"MSET", "Arm/A", "0", "Arm/B", "true", "Leg/A", "1"});
    const auto options = isFollowed ? following() : patientOptions();
    ZoMemoryProxy memory = memoryOf(linkTo(server.port(), asAlice(options)));
    const ZoValue request = requestFor({"Arm/A", "Arm/B", "Leg/A", "Arm/A"});
    auto last = std::chrono::steady_clock::now();
    QCOMPARE(memory.getListAnswer(request).changed, (std::vector<int>{0, 1, 2, 3}));
    for (int value = 1; value < 20; ++value) {
        const auto written = std::chrono::steady_clock::now();
        server.command({"SET", "Arm/A", std::to_string(value)});
        QVERIFY(answers(memory, request, [&](const ZoListAnswer& answer) {
            const bool isNew = answer.values[0] == ZoValue(value);
            const bool isInTime =
                answer.arrived >= last && answer.arrived <= std::chrono::steady_clock::now();
            last = answer.arrived;
            return isInTime &&
                   answer.changed == (isNew ? std::vector<int>{0, 3} : std::vector<int>{}) && isNew;
        }));
        QVERIFY(last >= written);
    }
}

void TestFollowing::theSameAnswerKeepsItsTime()
{
    // The robot answers three times, and hangs then.
    FakeRobot robot([](FakeConnection& connection) {
        connection.greet();
        for (int round = 0; round < 3; ++round) {
            while (connection.readCommand().at(0) != "MGET")
                connection.send("+PONG\r\n");
            connection.send("*1\r\n$1\r\n" + std::to_string(round) + "\r\n");
        }
        connection.waitForEnd();
    });
    ZoMemoryProxy memory = memoryOf(linkTo(robot.port(), following(quietOptions())));
    const ZoValue request = requestFor({"Arm/A"});
    std::optional<ZoListAnswer> newest;
    int same = 0;
    QVERIFY(answers(memory, request, [&](const ZoListAnswer& answer) {
        const bool isSame = newest && newest->values == answer.values;
        if (isSame && newest->arrived != answer.arrived)
            return false;
        same += isSame ? 1 : 0;
        newest = answer;
        return newest->values[0] == ZoValue(2);
    }));
    for (int i = 0; i < 20; ++i) {
        try {
            const ZoListAnswer answer = memory.getListAnswer(request);
            QVERIFY(answer.arrived == newest->arrived && answer.changed.empty());
            ++same;
        } catch (const ZoUnderWay&) {
            // It has become too old.
        }
    }
    QVERIFY(same > 0);
}

void TestFollowing::anAnswerAfterALossIsComparedWithTheOneBefore()
{
    const RedisServer server;
    server.command({"MSET", "Arm/A", "1", "Arm/B", "1"});
    const auto broker = linkTo(server.port(), following());
    ZoMemoryProxy memory = memoryOf(broker);
    const ZoValue request = requestFor({"Arm/A", "Arm/B"});
    const auto any = [](const ZoListAnswer&) { return true; };
    QVERIFY(answers(memory, request, any));
    const auto since = broker->linkStatus().since;
    server.command({"CLIENT", "KILL", "TYPE", "normal", "SKIPME", "yes"});
    server.command({"SET", "Arm/B", "2"});
    TRY_VERIFY(broker->isConnected() && broker->linkStatus().since != since);
    std::vector<int> changed;
    QVERIFY(answers(memory, request, [&](const ZoListAnswer& answer) {
        changed = answer.changed;
        return true;
    }));
    QCOMPARE(changed, std::vector<int>{1});
}

REGISTER_TEST(TestFollowing, NoApplication)

#include "tst_following.moc"
