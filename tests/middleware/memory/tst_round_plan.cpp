// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <memory/round_plan.h>

#include <QtTest>

#include <deque>
#include <string>

using namespace zo;

namespace {

/// Keys of their own, as a plan asks for them.
class Keys
{
public:
    explicit Keys(int count)
    {
        for (int i = 0; i < count; ++i)
            fEntries.emplace_back(std::to_string(i), FollowedValue());
    }

    RoundPlan::Keys of(int first, int count)
    {
        RoundPlan::Keys keys;
        for (int i = first; i < first + count; ++i)
            keys.push_back(&fEntries[static_cast<std::size_t>(i)]);
        return keys;
    }

private:
    std::deque<FollowedValues::Entry> fEntries;
};

} // namespace

/// What a round says.
class TestRoundPlan : public GuardedTest
{
    Q_OBJECT

private slots:
    void oneCommandAsksForAThousandKeys();
    void singleKeysGoBehindTheOthersEachByItself();
    void aReadWithoutNoticesIsAnnounced();
    void nothingIsAskedForWithoutKeys();
};

void TestRoundPlan::oneCommandAsksForAThousandKeys()
{
    Keys keys(2001);
    const RoundPlan plan(keys.of(0, 2001), {}, Telling::Wanted);
    QCOMPARE(plan.commands().size(), std::size_t{3});
    const int counts[] = {1000, 1000, 1};
    for (std::size_t i = 0; i < 3; ++i) {
        QCOMPARE(plan.commands()[i].first, static_cast<int>(i) * 1000);
        QCOMPARE(plan.commands()[i].keys, counts[i]);
        QCOMPARE((*plan.parts())[i].end, plan.commands()[i].end);
        QCOMPARE((*plan.parts())[i].replies, 1);
    }
    QCOMPARE(plan.commands().back().end, plan.bytes()->size());
    QCOMPARE(plan.replies(), 3);
}

void TestRoundPlan::singleKeysGoBehindTheOthersEachByItself()
{
    Keys keys(4);
    const RoundPlan plan(keys.of(0, 2), keys.of(2, 2), Telling::Wanted);
    QCOMPARE(*plan.bytes(), std::string("*3\r\n$4\r\nMGET\r\n$1\r\n0\r\n$1\r\n1\r\n"
                                        "*2\r\n$4\r\nMGET\r\n$1\r\n2\r\n"
                                        "*2\r\n$4\r\nMGET\r\n$1\r\n3\r\n"));
    QVERIFY(plan.keys() == keys.of(0, 4));
    QCOMPARE(plan.parts()->size(), std::size_t{3});
}

void TestRoundPlan::aReadWithoutNoticesIsAnnounced()
{
    Keys keys(2);
    const RoundPlan plan(keys.of(0, 1), keys.of(1, 1), Telling::Refused);
    const std::string no = "*3\r\n$6\r\nCLIENT\r\n$7\r\nCACHING\r\n$2\r\nNO\r\n";
    QCOMPARE(*plan.bytes(),
             no + "*2\r\n$4\r\nMGET\r\n$1\r\n0\r\n" + no + "*2\r\n$4\r\nMGET\r\n$1\r\n1\r\n");
    QCOMPARE(plan.repliesPerCommand(), 2);
    QCOMPARE(plan.replies(), 4);
    QCOMPARE((*plan.parts())[0].replies, 2);
    QCOMPARE(RoundPlan(keys.of(0, 1), {}, Telling::Unknown).replies(), 1);
}

void TestRoundPlan::nothingIsAskedForWithoutKeys()
{
    const RoundPlan plan({}, {}, Telling::Wanted);
    QVERIFY(plan.commands().empty());
    QVERIFY(plan.bytes()->empty());
    QCOMPARE(plan.replies(), 0);
}

REGISTER_TEST(TestRoundPlan, NoApplication)

#include "tst_round_plan.moc"
