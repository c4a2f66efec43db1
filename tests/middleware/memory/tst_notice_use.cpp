// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <memory/notice_use.h>

#include <QtTest>

using namespace zo;

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

const NoticeUse::Time start{std::chrono::hours(1)};
constexpr int keys = 30;

/// All keys were written before a round that is told of it.
NoticeUse pausedAt(NoticeUse::Time now)
{
    NoticeUse notices;
    notices.told(keys, keys, now);
    return notices;
}

} // namespace

/// When a list is told of changes, and when it reads everything.
class TestNoticeUse : public GuardedTest
{
    Q_OBJECT

private slots:
    void fewChangesPay();
    void oneRoundWithManyChangesSaysLittle();
    void aTrialIsMadeAfterAPause();
    void eachTrialInVainDoublesThePause();
    void noTrialIsMadeWhileMostValuesChange();
    void fewChangedValuesDoNotPutATrialOff();
};

void TestNoticeUse::fewChangesPay()
{
    NoticeUse notices;
    for (int i = 0; i < 10; ++i) {
        notices.told(keys / 3, keys, start);
        QVERIFY(notices.pays(start));
    }
}

void TestNoticeUse::oneRoundWithManyChangesSaysLittle()
{
    NoticeUse notices;
    notices.told(keys / 2, keys, start);
    QVERIFY(notices.pays(start));
    notices.told(keys / 3, keys, start);
    notices.told(keys / 2, keys, start);
    QVERIFY(notices.pays(start));
    notices.told(keys / 2, keys, start);
    QVERIFY(!notices.pays(start));
}

void TestNoticeUse::aTrialIsMadeAfterAPause()
{
    const NoticeUse notices = pausedAt(start);
    QVERIFY(!notices.pays(start + NoticeUse::fShortestPause - milliseconds(1)));
    QVERIFY(notices.pays(start + NoticeUse::fShortestPause));
}

void TestNoticeUse::eachTrialInVainDoublesThePause()
{
    NoticeUse notices = pausedAt(start);
    NoticeUse::Time now = start;
    for (auto pause = NoticeUse::fShortestPause; pause < NoticeUse::fLongestPause; pause *= 2) {
        QVERIFY(!notices.pays(now + pause - milliseconds(1)));
        now += pause;
        QVERIFY(notices.pays(now));
        notices.told(keys, keys, now);
    }
    QVERIFY(!notices.pays(now + NoticeUse::fLongestPause - milliseconds(1)));
    QVERIFY(notices.pays(now + NoticeUse::fLongestPause));
}

void TestNoticeUse::noTrialIsMadeWhileMostValuesChange()
{
    NoticeUse notices = pausedAt(start);
    const NoticeUse::Time end = start + seconds(100);
    for (NoticeUse::Time now = start; now < end; now += milliseconds(100)) {
        QVERIFY(!notices.pays(now));
        notices.read(keys / 3 + 1, keys, now);
    }
    QVERIFY(notices.pays(end + NoticeUse::fShortestPause));
}

void TestNoticeUse::fewChangedValuesDoNotPutATrialOff()
{
    NoticeUse notices = pausedAt(start);
    notices.read(keys / 3, keys, start + seconds(4));
    QVERIFY(notices.pays(start + NoticeUse::fShortestPause));
}

REGISTER_TEST(TestNoticeUse, NoApplication)
#include "tst_notice_use.moc"
