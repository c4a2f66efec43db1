// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <memory/forbidden_keys.h>

#include <QtTest>

using namespace zo;

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using Set = ForbiddenKeys::Set;

const ForbiddenKeys::Time start{std::chrono::hours(1)};

} // namespace

/// How long a refused key is not asked for again.
class TestForbiddenKeys : public GuardedTest
{
    Q_OBJECT

private slots:
    void theyAreRemembered();
    void theyAreForgottenAfterAWhile();
    void theyAreForgottenOnANewConnection();
    void whatAnOldConnectionRefusedIsIgnored();
};

void TestForbiddenKeys::theyAreRemembered()
{
    ForbiddenKeys keys;
    QVERIFY(keys.known(1, start)->empty());
    keys.add({"a", "b"}, 1, start);
    const auto known = keys.known(1, start);
    QVERIFY(*known == (Set{"a", "b"}));
    QVERIFY(keys.known(1, start + seconds(9)) == known); // the same: nothing is encoded anew
    keys.add({}, 1, start);
    QVERIFY(keys.known(1, start) == known);
    keys.add({"c"}, 1, start + seconds(1));
    QVERIFY(*known == (Set{"a", "b"}));
    QVERIFY(*keys.known(1, start + seconds(1)) == (Set{"a", "b", "c"}));
}

void TestForbiddenKeys::theyAreForgottenAfterAWhile()
{
    ForbiddenKeys keys;
    keys.add({"a"}, 1, start);
    keys.add({"b"}, 1, start + seconds(9)); // does not put off the end of "a"
    QVERIFY(keys.known(1, start + seconds(10) - milliseconds(1))->size() == 2);
    QVERIFY(keys.known(1, start + seconds(10))->empty());
    keys.add({"c"}, 1, start + seconds(11));
    QVERIFY(*keys.known(1, start + seconds(20)) == Set{"c"});
}

void TestForbiddenKeys::theyAreForgottenOnANewConnection()
{
    ForbiddenKeys keys;
    keys.add({"a"}, 1, start);
    QVERIFY(keys.known(2, start)->empty());
    keys.add({"b"}, 2, start);
    QVERIFY(*keys.known(2, start) == Set{"b"});
}

void TestForbiddenKeys::whatAnOldConnectionRefusedIsIgnored()
{
    ForbiddenKeys keys;
    QVERIFY(keys.known(2, start)->empty());
    keys.add({"a"}, 1, start);
    QVERIFY(keys.known(2, start)->empty());
    QVERIFY(keys.known(1, start)->empty());
}

REGISTER_TEST(TestForbiddenKeys, QCoreApplication)
#include "tst_forbidden_keys.moc"
