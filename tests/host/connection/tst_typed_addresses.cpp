// SPDX-License-Identifier: MIT
#include "connection/typed_addresses.h"
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "support/robot.h"

#include <QtTest>

/// Addresses as users type them.
class TestTypedAddresses : public GuardedTest
{
    Q_OBJECT

private slots:
    void oneOrSeveralAreRead_data();
    void oneOrSeveralAreRead();
    void thePortIsThatOfAddressesThatNameTheirs_data();
    void thePortIsThatOfAddressesThatNameTheirs();
    void whatIsNoneIsNamed_data();
    void whatIsNoneIsNamed();
};

void TestTypedAddresses::oneOrSeveralAreRead_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("read");
    QTest::newRow("one") << " arm "
                         << "arm:7000";
    QTest::newRow("its port") << "arm:1"
                              << "arm:1";
    QTest::newRow("several") << "arm , leg:1,[::1],[::2]:3"
                             << "arm:7000 leg:1 [::1]:7000 [::2]:3";
    QTest::newRow("twice") << "arm,arm:7000"
                           << "arm:7000";
}

void TestTypedAddresses::oneOrSeveralAreRead()
{
    QFETCH(QString, typed);
    QStringList texts;
    for (const ZoAddress& address : typedAddresses(typed, 7000))
        texts += QString::fromStdString(address.toText());
    QTEST(texts.join(' '), "read");
}

void TestTypedAddresses::thePortIsThatOfAddressesThatNameTheirs_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("port");
    QTest::newRow("none") << "arm" << 0;
    QTest::newRow("one") << " arm:8000 " << 8000;
    QTest::newRow("the first of all") << "arm:8000, [::1]:8001" << 8000;
    QTest::newRow("not all") << "arm:8000,leg" << 0;
    QTest::newRow("not whole") << "arm:8000,leg:" << 0;
    QTest::newRow("nothing") << "" << 0;
}

void TestTypedAddresses::thePortIsThatOfAddressesThatNameTheirs()
{
    QFETCH(QString, typed);
    QTEST(typedPort(typed), "port");
}

void TestTypedAddresses::whatIsNoneIsNamed_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("problem");
    QTest::newRow("nothing") << " "
                             << "there is no host";
    QTest::newRow("no port") << "arm,leg:seven"
                             << "'leg:seven': the port must be a number";
    QTest::newRow("two commas")
        << "arm,,leg"
        << "'arm:7000,,leg:7000': there is nothing before or behind a comma";
    QTest::newRow("too many") << QString("a1,a2,a3,a4,a5,a6,a7,a8,a9,b1,b2,b3,b4,b5,b6,b7,b8")
                              << "more than 16 addresses";
}

void TestTypedAddresses::whatIsNoneIsNamed()
{
    QFETCH(QString, typed);
    QFETCH(QString, problem);
    const std::string error = errorOf([&] { typedAddresses(typed, 7000); });
    QVERIFY2(contains(error, problem.toStdString()), error.c_str());
}

REGISTER_TEST(TestTypedAddresses, QCoreApplication)
#include "tst_typed_addresses.moc"
