#include "support/guarded_test.h"

#include <zo/mutex.h>

#include <boost/weak_ptr.hpp>

#include <QtTest>

#include <atomic>
#include <future>
#include <thread>

/// The locks of the middleware and their guards.
class TestZoMutex : public GuardedTest
{
    Q_OBJECT

private slots:
    void aGuardKeepsOthersOut();
    void readersShareAndWritersWait();
    void aGuardKeepsItsLockAlive();
};

void TestZoMutex::aGuardKeepsOthersOut()
{
    const auto mutex = ZoMutex::createZoMutex();
    int counter = 0;
    const auto count = [&] {
        for (int i = 0; i < 10000; ++i) {
            const ZoCriticalSection guard(mutex);
            ++counter;
        }
    };
    std::thread other(count);
    count();
    other.join();
    QCOMPARE(counter, 20000);
}

void TestZoMutex::readersShareAndWritersWait()
{
    const auto mutex = ZoMutexRW::createZoMutexRW();
    std::atomic<bool> written{false};
    std::future<void> writer;
    {
        const ZoCriticalSectionRead mine(mutex);
        auto reader = std::async(std::launch::async, [&] { ZoCriticalSectionRead other(mutex); });
        QCOMPARE(reader.wait_for(std::chrono::seconds(20)), std::future_status::ready);
        writer = std::async(std::launch::async, [&] {
            const ZoCriticalSectionWrite guard(mutex);
            written = true;
        });
        QCOMPARE(writer.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
        QVERIFY(!written);
    }
    QCOMPARE(writer.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    QVERIFY(written);
}

void TestZoMutex::aGuardKeepsItsLockAlive()
{
    auto mutex = ZoMutex::createZoMutex();
    const boost::weak_ptr<ZoMutex> watched(mutex);
    {
        const ZoCriticalSection guard(mutex);
        mutex.reset();
        QVERIFY(!watched.expired());
    }
    QVERIFY(watched.expired());
}

QTEST_APPLESS_MAIN(TestZoMutex)
#include "tst_zo_mutex.moc"
