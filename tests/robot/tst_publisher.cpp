// SPDX-License-Identifier: MIT
#include "publisher.h"
#include "support/fake_memory.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <zo/error.h>

#include <QtTest>

#include <map>
#include <memory>
#include <utility>

namespace {

constexpr int steadyKeys = 100;

/// One key that counts the seconds, and others that never change.
std::vector<RobotKey> clockAmongSteadyKeys()
{
    std::vector<RobotKey> keys = {{"Clock", [](double t) { return ZoValue(t); }}};
    for (int i = 0; i < steadyKeys; ++i)
        keys.push_back({"Steady/" + std::to_string(i), [](double) { return ZoValue(1); }});
    return keys;
}

/// How often each key was written by the calls from number `first` on.
std::map<std::string, int> writes(const FakeMemory& memory, std::size_t first)
{
    std::map<std::string, int> counts;
    for (std::size_t i = first; i < memory.calls.size(); ++i) {
        const ZoValue& pairs = memory.calls[i].second;
        for (int k = 0; k < pairs.getSize(); ++k)
            ++counts[std::get<std::string>(pairs[k][0].data())];
    }
    return counts;
}

int lastCount(const FakeMemory& memory)
{
    return memory.calls.back().second.getSize();
}

} // namespace

class TestPublisher : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void allKeysAreWrittenFirst();
    void thenThoseThatHaveChanged();
    void everyKeyHasItsTurnWithinTenSeconds();
    void afterAFailedWriteAllAreWrittenAgain();
    void aMemoryThatMayHaveLostThemGetsAllAgain();

private:
    FakeMemory fMemory;
    std::unique_ptr<Publisher> fPublisher;
};

void TestPublisher::init()
{
    fMemory.calls.clear();
    fMemory.answer = [](const ZoValue&) { return ZoValue(); };
    fPublisher = std::make_unique<Publisher>(clockAmongSteadyKeys(), *fMemory.proxy());
}

void TestPublisher::allKeysAreWrittenFirst()
{
    fPublisher->publish(0);
    QCOMPARE(lastCount(fMemory), steadyKeys + 1);
}

void TestPublisher::thenThoseThatHaveChanged()
{
    fPublisher->publish(0);
    fPublisher->publish(0.01);
    QCOMPARE(lastCount(fMemory), 1);
    const ZoValue& pair = std::as_const(fMemory.calls.back().second)[0];
    QVERIFY(pair[0] == ZoValue("Clock"));
    QVERIFY(pair[1] == ZoValue(0.01));
}

void TestPublisher::everyKeyHasItsTurnWithinTenSeconds()
{
    fPublisher->publish(0);
    const std::size_t first = fMemory.calls.size();
    constexpr int rate = 50;
    for (int tick = 1; tick <= 10 * rate; ++tick) {
        fPublisher->publish(tick / double(rate));
        QVERIFY(lastCount(fMemory) <= 3); // not all at once
    }
    const auto counts = writes(fMemory, first);
    QCOMPARE(counts.size(), std::size_t(steadyKeys + 1));
    for (const auto& [name, count] : counts)
        QCOMPARE(count, name == "Clock" ? 10 * rate : 1);
}

void TestPublisher::afterAFailedWriteAllAreWrittenAgain()
{
    fPublisher->publish(0);
    fMemory.answer = [](const ZoValue&) -> ZoValue { throw ZoError("no answer"); };
    QVERIFY_EXCEPTION_THROWN(fPublisher->publish(0.01), ZoError);
    fMemory.answer = [](const ZoValue&) { return ZoValue(); };
    fPublisher->publish(0.02);
    QCOMPARE(lastCount(fMemory), steadyKeys + 1);
    fPublisher->publish(0.03);
    QCOMPARE(lastCount(fMemory), 1);
}

void TestPublisher::aMemoryThatMayHaveLostThemGetsAllAgain()
{
    fPublisher->publish(0);
    fPublisher->startOver();
    fPublisher->publish(0.01);
    QCOMPARE(lastCount(fMemory), steadyKeys + 1);
}

REGISTER_TEST(TestPublisher, QCoreApplication)
#include "tst_publisher.moc"
