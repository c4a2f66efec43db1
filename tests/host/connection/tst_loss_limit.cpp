// SPDX-License-Identifier: MIT
#include "connection/loss_limit.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/register_test.h"

#include <QSettings>
#include <QtTest>

/// How long to wait for a robot, as the user's settings have it.
class TestLossLimit : public GuardedTest
{
    Q_OBJECT

private slots:
    void init() { QSettings().clear(); }
    void itIsAnHourAtFirst();
    void itIsKept_data();
    void itIsKept();
    void nonsenseIsTheDefault_data();
    void nonsenseIsTheDefault();
};

void TestLossLimit::itIsAnHourAtFirst()
{
    QVERIFY(storedLossLimit() == std::chrono::hours(1));
}

void TestLossLimit::itIsKept_data()
{
    QTest::addColumn<int>("limit");
    QTest::newRow("nothing") << 0;
    QTest::newRow("90 s") << 90;
    QTest::newRow("the longest") << static_cast<int>(longestLossLimit.count());
}

void TestLossLimit::itIsKept()
{
    QFETCH(int, limit);
    storeLossLimit(std::chrono::seconds(limit));
    QVERIFY(storedLossLimit() == std::chrono::seconds(limit));
}

void TestLossLimit::nonsenseIsTheDefault_data()
{
    QTest::addColumn<QString>("stored");
    QTest::newRow("no number") << "for ever";
    QTest::newRow("negative") << "-1";
    QTest::newRow("too long") << "604801";
    QTest::newRow("overflow") << "99999999999999999999";
}

void TestLossLimit::nonsenseIsTheDefault()
{
    QFETCH(QString, stored);
    storeLossLimit(std::chrono::seconds(7));
    const QStringList names = QSettings().allKeys();
    QCOMPARE(names.size(), 1);
    QSettings().setValue(names[0], stored);
    QVERIFY(storedLossLimit() == defaultLossLimit);
}

REGISTER_TEST(TestLossLimit, HostApplication)
#include "tst_loss_limit.moc"
