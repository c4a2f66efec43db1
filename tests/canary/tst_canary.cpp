// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"

#include <QTimer>
#include <QWidget>
#include <QtTest>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

/// A fault of each kind that the checked builds must report, in a slot that an event calls, as the
/// product's own code is called. A build that keeps silent about one checks nothing.
class TestCanary : public GuardedTest
{
    Q_OBJECT

private slots:
    void aLeak();
    void aRace();
    void aNumberOutOfRange();
    void anIndexOutOfRange();

private:
    void inASlot(const std::function<void()>& fault);

    volatile int fShared = 0;
};

void TestCanary::inASlot(const std::function<void()>& fault)
{
    QWidget window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, patience));
    bool isDone = false;
    QTimer::singleShot(0, &window, [&] {
        fault();
        isDone = true;
    });
    TRY_VERIFY(isDone);
}

void TestCanary::aLeak()
{
    inASlot([] {
        // Through a volatile pointer: what nobody uses is never allocated.
        int* volatile lost = new int[1000];
        lost[0] = 1;
        lost = nullptr;
    });
}

// All of it in the slot: what a thread did that ended long ago may be forgotten, and is not told
// then.
void TestCanary::aRace()
{
    inASlot([this] {
        std::atomic<bool> hasBegun{false};
        std::thread other([&] {
            hasBegun.store(true, std::memory_order_relaxed);
            fShared = fShared + 1;
        });
        while (!hasBegun.load(std::memory_order_relaxed))
            std::this_thread::yield();
        fShared = fShared + 1;
        other.join();
    });
    QVERIFY(fShared > 0);
}

void TestCanary::aNumberOutOfRange()
{
    inASlot([] {
        volatile double large = 1e300;
        volatile int number = static_cast<int>(large);
        static_cast<void>(number);
    });
}

void TestCanary::anIndexOutOfRange()
{
    inASlot([] {
        std::vector<int> some(3);
        some.reserve(10);
        some[some.capacity() - 1] =
            1; // inside of what is reserved: only the library itself notices
    });
}

REGISTER_TEST(TestCanary, QApplication)
#include "tst_canary.moc"
