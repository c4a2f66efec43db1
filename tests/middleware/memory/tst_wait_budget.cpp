// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <memory/wait_budget.h>

#include <QtTest>

#include <thread>

using namespace zo;

namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

const WaitBudget::Time start{std::chrono::hours(1)};

WaitBudget::Time at(milliseconds time)
{
    return start + time;
}

} // namespace

/// How long a thread may still wait.
class TestWaitBudget : public GuardedTest
{
    Q_OBJECT

private slots:
    void noWaitIsLongerThanItsWish();
    void waitsAddUp();
    void whatIsLongAgoCountsNoMore();
    void eachThreadHasItsOwn();
};

void TestWaitBudget::noWaitIsLongerThanItsWish()
{
    WaitBudget budget;
    QVERIFY(budget.left(start, milliseconds(4)) == milliseconds(4));
    QVERIFY(budget.left(start, milliseconds(40)) == milliseconds(10));
}

void TestWaitBudget::waitsAddUp()
{
    WaitBudget budget;
    budget.spend(start, at(milliseconds(4)));
    budget.spend(at(milliseconds(20)), at(milliseconds(23)));
    QVERIFY(budget.left(at(milliseconds(30)), milliseconds(5)) == milliseconds(3));
    budget.spend(at(milliseconds(30)), at(milliseconds(50))); // it was woken late
    QVERIFY(budget.left(at(milliseconds(60)), milliseconds(5)) == milliseconds(0));
}

void TestWaitBudget::whatIsLongAgoCountsNoMore()
{
    WaitBudget budget;
    budget.spend(start, at(milliseconds(10)));
    const auto end = at(milliseconds(110));
    QVERIFY(budget.left(end - nanoseconds(1), milliseconds(5)) == milliseconds(0));
    QVERIFY(budget.left(end, milliseconds(5)) == milliseconds(5));
}

void TestWaitBudget::eachThreadHasItsOwn()
{
    const auto left = [] {
        return WaitBudget::ofThread().left(at(milliseconds(10)), milliseconds(5));
    };
    WaitBudget::ofThread().spend(start, at(milliseconds(10)));
    WaitBudget::Duration ofOther{};
    std::thread([&] { ofOther = left(); }).join();
    QVERIFY(left() == milliseconds(0));
    QVERIFY(ofOther == milliseconds(5));
}

REGISTER_TEST(TestWaitBudget, NoApplication)

#include "tst_wait_budget.moc"
