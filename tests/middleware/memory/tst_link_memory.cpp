// SPDX-License-Identifier: MIT
#include "support/counted_memory.h"
#include "support/guarded_test.h"
#include "support/machine_bench.h"
#include "support/register_test.h"

#include <QtTest>

#include <random>
#include <set>

using namespace zo;

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

/// A machine between callers and a robot that behave well, in whatever order, while memory is
/// short at any moment.
class HardTimes
{
public:
    explicit HardTimes(std::uint32_t seed) : fRandom(seed), fMachine(settings(), seed)
    {
        event([&] { fMachine.start(fNow); });
    }

    void step()
    {
        fIsShort = upTo(3) == 0;
        doSomething();
        fIsShort = false;
        isSane = isSane && (fMachine.wakeAt() != LinkMachine::Time::max());
    }
    /// Whether it comes up in good times.
    bool recovers()
    {
        const auto end = fNow + seconds(60);
        while (!fMachine.condition().isUp && fNow < end)
            doSomething();
        return fMachine.condition().isUp;
    }
    /// Whether everything ends.
    bool ends()
    {
        fIsShort = true;
        event([&] { fMachine.stop(fNow); });
        return fOpen.empty() && fAsked == fEnded;
    }

    bool isSane = true;
    int losses = 0;
    int answers = 0;

private:
    static std::shared_ptr<const LinkSettings> settings()
    {
        ZoBrokerOptions options;
        options.tls = true;
        options.password = "a long password that no string holds without memory of its own";
        return MachineBench::settingsFor(options);
    }

    int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(fRandom); }

    template <class Event>
    void event(const Event& happen)
    {
        {
            const MemoryShortage shortage(fIsShort ? upTo(4) : -1);
            happen();
        }
        while (const auto action = fMachine.nextAction())
            std::visit([this](const auto& what) { this->take(what); }, *action);
    }

    void doSomething()
    {
        if (!fTasks.empty() && upTo(4) > 0) {
            const auto task = std::move(fTasks.front());
            fTasks.erase(fTasks.begin());
            event(task);
        } else if (upTo(2) == 0) {
            ask();
        } else if (fMachine.wakeAt() != LinkMachine::Time::max() && upTo(3) == 0) {
            fNow = std::max(fNow, fMachine.wakeAt());
            event([&] { fMachine.woken(fNow); });
        } else {
            fNow += milliseconds(upTo(20));
        }
    }

    void ask()
    {
        const std::string name = std::to_string(++fCalls);
        auto sink = std::make_shared<StatusSink>(name);
        const auto call = std::make_shared<Call>("GET", sharedText("CALL " + name + ";"), 1, sink,
                                                 Deadline::after(fNow, milliseconds(upTo(500))));
        fSinks[call.get()] = sink;
        fAsked.insert(call);
        event([&] { fMachine.call(fNow, call); });
    }

    void take(const LinkAction::LookUp& action)
    {
        fTasks.push_back(
            [this, action] { fMachine.lookedUp(fNow, action.number, fAddresses, fNoProblem); });
    }
    void take(const LinkAction::Connect& action)
    {
        fOpen.insert(action.connection);
        fTasks.push_back([this, action] { fMachine.connected(fNow, action.connection); });
    }
    void take(const LinkAction::StartTls& action)
    {
        fTasks.push_back([this, action] { fMachine.secured(fNow, action.connection); });
    }
    void take(const LinkAction::Write& action)
    {
        isSane = isSane && fOpen.count(action.connection) == 1;
        const std::string reply = replyTo(std::string(action.slice()));
        fTasks.push_back([this, action] { fMachine.written(fNow, action.connection); });
        fTasks.push_back(
            [this, action, reply] { fMachine.received(fNow, action.connection, reply); });
    }
    void take(const LinkAction::Close& action)
    {
        isSane = isSane && fOpen.erase(action.connection) == 1;
    }
    void take(const LinkAction::Tell& action) { losses += action.condition.isUp ? 0 : 1; }
    void take(const LinkAction::End& action)
    {
        isSane = isSane && fEnded.insert(action.exchange).second;
        if (action.problem)
            return;
        const auto& got = fSinks.at(action.exchange.get())->answers();
        isSane =
            isSane && got.size() == 1 && "CALL " + got[0].text + ";" == *action.exchange->bytes();
        ++answers;
    }

    static std::string replyTo(const std::string& request)
    {
        if (request.find("AUTH") != std::string::npos)
            return "+OK\r\n+PONG\r\n+OK\r\n";
        if (request.find("PING") != std::string::npos)
            return "+PONG\r\n";
        return "+" + request.substr(5, request.size() - 6) + "\r\n";
    }

    const std::vector<LinkAddress> fAddresses = {MachineBench::address("fd00::1"),
                                                 MachineBench::address("10.0.0.1")};
    const std::string fNoProblem;
    std::mt19937 fRandom;
    LinkMachine fMachine;
    LinkMachine::Time fNow = LinkMachine::Time(std::chrono::hours(1000));
    bool fIsShort = false;
    int fCalls = 0;
    std::vector<std::function<void()>> fTasks;
    std::set<ConnectionId> fOpen;
    std::set<std::shared_ptr<Exchange>> fAsked;
    std::set<std::shared_ptr<Exchange>> fEnded;
    std::map<const Exchange*, std::shared_ptr<StatusSink>> fSinks;
};

} // namespace

/// A link when memory runs out, at every moment.
class TestLinkMemory : public GuardedTest
{
    Q_OBJECT

private slots:
    void shortageEndsALinkAndNothingElse();
    void theEndOfManyCallsNeedsNoMemory();
    void noMemoryIsGivenBackWithAPassword_data();
    void noMemoryIsGivenBackWithAPassword();
};

void TestLinkMemory::shortageEndsALinkAndNothingElse()
{
    int losses = 0;
    int answers = 0;
    for (std::uint32_t seed = 0; seed < 2000; ++seed) {
        HardTimes times(seed);
        for (int i = 0; i < 200; ++i)
            times.step();
        QVERIFY2(times.isSane, qPrintable(QString::number(seed)));
        QVERIFY2(times.recovers(), qPrintable(QString::number(seed)));
        QVERIFY2(times.ends() && times.isSane, qPrintable(QString::number(seed)));
        losses += times.losses;
        answers += times.answers;
    }
    QVERIFY2(losses > 2000 && answers > 2000, qPrintable(QString::number(losses)));
}

void TestLinkMemory::theEndOfManyCallsNeedsNoMemory()
{
    MachineBench bench;
    bench.startUp();
    std::vector<std::shared_ptr<Exchange>> calls(1000);
    for (auto& call : calls)
        call = bench.call("GET");
    {
        const MemoryShortage shortage(0);
        bench.machine.failed(bench.now);
    }
    bench.settle();
    for (const auto& call : calls)
        QCOMPARE(bench.end(call), std::string("robot at arm:6379: out of memory"));
}

void TestLinkMemory::noMemoryIsGivenBackWithAPassword_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("short") << 8;
    QTest::newRow("long") << 1000;
}

void TestLinkMemory::noMemoryIsGivenBackWithAPassword()
{
    QFETCH(int, size);
    ZoBrokerOptions options;
    options.password = std::string(static_cast<std::size_t>(size), '*') + " sesame";
    const WatchFor watch(options.password);
    {
        MachineBench bench(options);
        bench.start();
        bench.answerLookUp();
        bench.connect();
        bench.finishWrite();
        bench.receive("+OK\r\n+PONG\r\n+OK\r\n");
        QVERIFY(bench.isUp());
        bench.machine.reconnect(bench.now, MachineBench::settingsFor(options));
        bench.settle();
        bench.answerLookUp();
        bench.connect();
        bench.receive("-WRONGPASS no\r\n");
        QVERIFY(bench.machine.condition().isRefused);
    }
    QCOMPARE(watch.found(), 0);
    std::make_unique<std::string>(options.password + options.password); // it would have been seen
    QVERIFY(watch.found() > 0);
}

REGISTER_TEST(TestLinkMemory, QCoreApplication)
#include "tst_link_memory.moc"
