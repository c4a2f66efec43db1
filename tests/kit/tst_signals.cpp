// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"

#include <kit/signals.h>

#include <QtTest>

#include <unistd.h>

using namespace std::chrono_literals;

/// Waiting for signals.
class TestSignals : public GuardedTest
{
    Q_OBJECT

private slots:
    void aSignalEndsTheWait();
    void withoutOneTheWaitEndsInTime();
    void aTimeThatIsOverIsNoWait();
    void otherSignalsDoNotEndTheWait();
    void whatIsIgnoredStaysIgnored();

private:
    const kit::Signals fSignals{SIGUSR1, SIGUSR2};
};

namespace {

auto now()
{
    return std::chrono::steady_clock::now();
}

void doNothing(int) {}

} // namespace

void TestSignals::aSignalEndsTheWait()
{
    for (const int number : {SIGUSR1, SIGUSR2}) {
        ::kill(::getpid(), number);
        QCOMPARE(fSignals.waitUntil(now() + std::chrono::milliseconds(patience)), number);
    }
}

void TestSignals::withoutOneTheWaitEndsInTime()
{
    const auto then = now() + 20ms;
    QCOMPARE(fSignals.waitUntil(then), 0);
    QVERIFY(now() >= then);
}

void TestSignals::aTimeThatIsOverIsNoWait()
{
    QCOMPARE(fSignals.waitUntil({}), 0);
    ::kill(::getpid(), SIGUSR1);
    QCOMPARE(fSignals.waitUntil({}), SIGUSR1);
}

void TestSignals::otherSignalsDoNotEndTheWait()
{
    struct sigaction action
    {
    };
    action.sa_handler = doNothing;
    ::sigaction(SIGALRM, &action, nullptr);
    ::ualarm(5000, 0);
    const auto then = now() + 50ms;
    QCOMPARE(fSignals.waitUntil(then), 0);
    QVERIFY(now() >= then);
    ::signal(SIGALRM, SIG_DFL);
}

void TestSignals::whatIsIgnoredStaysIgnored()
{
    const auto before = std::signal(SIGHUP, SIG_IGN);
    const kit::Signals caught{SIGHUP, SIGUSR1};
    ::kill(::getpid(), SIGHUP);
    ::kill(::getpid(), SIGUSR1);
    QCOMPARE(caught.waitUntil({}), SIGUSR1);
    QCOMPARE(caught.waitUntil({}), 0);
    std::signal(SIGHUP, before);
}

REGISTER_TEST(TestSignals, NoApplication)
#include "tst_signals.moc"
