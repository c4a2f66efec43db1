// SPDX-License-Identifier: MIT
#include "support/fake_robot.h"
#include "support/guarded_test.h"
#include "support/redis_server.h"
#include "support/register_test.h"
#include "support/robot.h"

#include <QtTest>

#include <atomic>
#include <chrono>
#include <future>

/// A check of a robot that nobody wants any more.
class TestCalledOffCheck : public GuardedTest
{
    Q_OBJECT

private slots:
    void aCheckIsCalledOffWhileItWaits();
    void aCheckIsCalledOffWhileItCountsTheKeys();
    void aCheckThatIsWantedGoesOnToItsEnd();
    void aCheckIsMadeOnOneConnection();
};

void TestCalledOffCheck::aCheckIsCalledOffWhileItWaits()
{
    const FakeRobot robot([](FakeConnection& connection) { connection.waitForEnd(); });
    std::atomic<bool> isWanted{true};
    std::atomic<bool> isWaiting{false};
    std::string last;
    auto checked = std::async(std::launch::async, [&] {
        ZoBrokerOptions options;
        options.connectTimeout = std::chrono::hours(1);
        const auto tell = [&](const ZoCheck::Step& step) {
            last = step.text;
            isWaiting = step.subject == ZoCheck::Subject::Tls; // what comes next is silent
        };
        return ZoCheck::run({"127.0.0.1", robot.port()}, options, tell,
                            [&] { return isWanted.load(); });
    });
    TRY_VERIFY(isWaiting);
    isWanted = false;
    QVERIFY(isReady(checked));
    QVERIFY(!checked.get());
    QCOMPARE(last, std::string("called off"));
}

void TestCalledOffCheck::aCheckThatIsWantedGoesOnToItsEnd()
{
    const RedisServer server;
    int steps = 0;
    QVERIFY(ZoCheck::run(
        {"127.0.0.1", server.port()}, patientOptions(), [&](const ZoCheck::Step&) { ++steps; },
        [] { return true; }));
    QCOMPARE(steps, 11);
}

void TestCalledOffCheck::aCheckIsCalledOffWhileItCountsTheKeys()
{
    const RedisServer server;
    ZoCheck::Step last{};
    bool isWanted = true;
    const auto tell = [&](const ZoCheck::Step& step) {
        last = step;
        isWanted = isWanted && step.subject != ZoCheck::Subject::Server; // the keys are next
    };
    QVERIFY(!ZoCheck::run({"127.0.0.1", server.port()}, patientOptions(), tell,
                          [&isWanted] { return isWanted; }));
    QVERIFY(last.subject == ZoCheck::Subject::Keys);
    QCOMPARE(last.text, std::string("called off"));
}

void TestCalledOffCheck::aCheckIsMadeOnOneConnection()
{
    const RedisServer server;
    const auto connections = [&server] {
        return QString::fromStdString(server.command({"INFO", "stats"}))
            .section("total_connections_received:", 1)
            .section('\r', 0, 0)
            .toInt();
    };
    const int before = connections();
    QVERIFY(
        ZoCheck::run({"127.0.0.1", server.port()}, patientOptions(), [](const ZoCheck::Step&) {}));
    QCOMPARE(connections() - before, 2); // the question's own is one of them
}

REGISTER_TEST(TestCalledOffCheck, NoApplication)
#include "tst_called_off_check.moc"
