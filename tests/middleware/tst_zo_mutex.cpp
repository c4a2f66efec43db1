// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/lock_state.h"
#include "support/register_test.h"
#include "support/together.h"

#include <zo/mutex.h>

#include <boost/weak_ptr.hpp>

#include <QtTest>

#include <optional>

/// The locks of the middleware and their guards.
class TestZoMutex : public GuardedTest
{
    Q_OBJECT

private slots:
    void aGuardKeepsOthersOut();
    void manyGuardsInTurnLoseNothing();
    void readersShareAndWritersWait();
    void aWriterKeepsReadersAndWritersOut();
    void aGuardKeepsItsLockAlive();
};

void TestZoMutex::aGuardKeepsOthersOut()
{
    const auto mutex = ZoMutex::createZoMutex();
    std::optional<LockAttempt> other;
    {
        const ZoCriticalSection guard(mutex);
        other.emplace(LockAttempt::with<ZoCriticalSection>(mutex));
        QVERIFY(other->waits());
    }
    QVERIFY(other->succeeds());
}

void TestZoMutex::manyGuardsInTurnLoseNothing()
{
    const auto mutex = ZoMutex::createZoMutex();
    int counter = 0;
    runTogether(2, [&](int) {
        for (int i = 0; i < 200000; ++i) {
            const ZoCriticalSection guard(mutex);
            ++counter;
        }
    });
    QCOMPARE(counter, 400000);
}

void TestZoMutex::readersShareAndWritersWait()
{
    const auto mutex = ZoMutexRW::createZoMutexRW();
    std::optional<LockAttempt> reader;
    std::optional<LockAttempt> writer;
    {
        const ZoCriticalSectionRead mine(mutex);
        reader.emplace(LockAttempt::with<ZoCriticalSectionRead>(mutex));
        QVERIFY(reader->succeeds());
        writer.emplace(LockAttempt::with<ZoCriticalSectionWrite>(mutex));
        QVERIFY(writer->waits());
    }
    QVERIFY(writer->succeeds());
}

void TestZoMutex::aWriterKeepsReadersAndWritersOut()
{
    const auto mutex = ZoMutexRW::createZoMutexRW();
    std::optional<LockAttempt> reader;
    std::optional<LockAttempt> writer;
    {
        const ZoCriticalSectionWrite mine(mutex);
        reader.emplace(LockAttempt::with<ZoCriticalSectionRead>(mutex));
        writer.emplace(LockAttempt::with<ZoCriticalSectionWrite>(mutex));
        QVERIFY(reader->waits());
        QVERIFY(writer->waits());
    }
    QVERIFY(reader->succeeds());
    QVERIFY(writer->succeeds());
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

REGISTER_TEST(TestZoMutex, NoApplication)
#include "tst_zo_mutex.moc"
