// SPDX-License-Identifier: MIT
#include "support/fake_robot.h"
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "support/robot.h"

#include <QtTest>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <string>
#include <vector>

namespace {

using std::chrono::milliseconds;

/// Names of `length` bytes that differ.
std::vector<std::string> numberedNames(int count, std::size_t length, int first = 0)
{
    std::vector<std::string> names;
    names.reserve(count);
    for (int i = first; i < first + count; ++i) {
        const std::string number = std::to_string(i);
        names.push_back(std::string(length - number.size(), 'k') + number);
    }
    return names;
}

/// A page of the key list, and where the next one begins.
std::string pageOf(int cursor, const std::vector<std::string>& names)
{
    std::string page =
        "*2\r\n$1\r\n" + std::to_string(cursor) + "\r\n*" + std::to_string(names.size()) + "\r\n";
    for (const std::string& name : names)
        page += "$" + std::to_string(name.size()) + "\r\n" + name + "\r\n";
    return page;
}

} // namespace

/// How long a list of keys is waited for, and what of a robot's pages is believed.
class TestKeyList : public GuardedTest
{
    Q_OBJECT

private slots:
    void aKeyListThatNeverEndsIsGivenUpInTime();
    void aKeyListWaitsWhilePagesComeWithNewNames();
    void aKeyListThatDripsForEverIsGivenUpInTime();
    void theKeyListsPagesGrowWhenTheyComeSoon();
    void aKeyListMayTakeAtLeastAsLongAsOneAnswer();
    void aKeyListThatGrowsForEverIsGivenUp();
    void aPageThatIsTooLargeIsNoKeyList();
    void aKeyListOfTinyNamesIsGivenUpForTheMemoryItTakes();
    void aServerThatKnowsNoKindsIsAskedForThatOfEachKey();
    void aBadKeyListEndsTheLink_data();
    void aBadKeyListEndsTheLink();
};

void TestKeyList::aKeyListThatNeverEndsIsGivenUpInTime()
{
    // The same thousand names on each page. Were each of them granted its time again, or each page
    // the whole time, the list would come to its end.
    const std::string page = pageOf(1, numberedNames(1000, 10));
    const FakeRobot robot([&page](FakeConnection& connection) {
        connection.greet();
        for (int i = 0; i < 300; ++i) {
            connection.readCommand();
            connection.send(page.substr(0, page.size() - 1));
            connection.sendSlowly("\n");
        }
        answering(pageOf(0, {}))(connection);
    });
    ZoMemoryProxy memory = memoryOf(linkTo(robot.port(), quietOptions(milliseconds(300))));
    const std::string error = errorOf([&] { memory.getDataListName(); });
    QVERIFY2(contains(error, "no reply to SCAN within 320 ms"), error.c_str());
}

void TestKeyList::aKeyListWaitsWhilePagesComeWithNewNames()
{
    const FakeRobot robot([](FakeConnection& connection) {
        connection.greet();
        for (int page = 0; page < 10; ++page) {
            connection.readCommand();
            connection.sendSlowly(pageOf(page < 9 ? 1 : 0, numberedNames(1, 12, page)));
        }
        connection.waitForEnd();
    });
    ZoMemoryProxy memory = memoryOf(linkTo(robot.port(), quietOptions(milliseconds(3000))));
    const auto start = std::chrono::steady_clock::now();
    QCOMPARE(memory.getDataListName().size(), std::size_t(10));
    QVERIFY(std::chrono::steady_clock::now() - start > milliseconds(3000));
}

void TestKeyList::aKeyListThatDripsForEverIsGivenUpInTime()
{
    const FakeRobot robot([](FakeConnection& connection) {
        connection.greet();
        for (int page = 0; page < 1000; ++page) {
            connection.readCommand();
            connection.sendSlowly(pageOf(1, numberedNames(1, 4, page)));
        }
        answering(pageOf(0, {}))(connection);
    });
    ZoBrokerOptions options = quietOptions(milliseconds(600));
    options.timeoutPerKey = std::chrono::microseconds(0);
    ZoMemoryProxy memory = memoryOf(linkTo(robot.port(), options));
    const std::string error = errorOf([&] { memory.getDataListName(); });
    QVERIFY2(contains(error, "no reply to SCAN within 9000 ms"), error.c_str());
}

void TestKeyList::theKeyListsPagesGrowWhenTheyComeSoon()
{
    QStringList counts;
    const FakeRobot robot([&counts](FakeConnection& connection) {
        connection.greet();
        for (int page = 0; page < 7; ++page) {
            counts += QString::fromStdString(connection.readCommand()[3]);
            const std::string names = pageOf(page < 6 ? 1 : 0, numberedNames(1, 320, page));
            if (page == 0)
                connection.sendSlowly(names); // which takes more than half of the time
            else
                connection.send(names);
        }
        connection.waitForEnd();
    });
    ZoMemoryProxy memory = memoryOf(linkTo(robot.port(), quietOptions(milliseconds(6500))));
    QCOMPARE(memory.getDataListName().size(), std::size_t(7));
    QCOMPARE(counts, QStringList({"1000", "1000", "2000", "4000", "8000", "10000", "10000"}));
}

void TestKeyList::aKeyListMayTakeAtLeastAsLongAsOneAnswer()
{
    const FakeRobot robot([](FakeConnection& connection) {
        connection.greet();
        connection.waitForEnd();
    });
    ZoBrokerOptions options = quietOptions(milliseconds(300));
    options.keyListTimeout = milliseconds(1);
    ZoMemoryProxy memory = memoryOf(linkTo(robot.port(), options));
    const std::string error = errorOf([&] { memory.getDataListName(); });
    QVERIFY2(contains(error, "no reply to SCAN within 300 ms"), error.c_str());
}

void TestKeyList::aKeyListThatGrowsForEverIsGivenUp()
{
    std::atomic<int> pages{0};
    const FakeRobot robot([&pages](FakeConnection& connection) {
        connection.greet();
        while (pages < 100) {
            connection.readCommand();
            const int page = pages++; // before the client can see it and give up
            connection.send(pageOf(1, numberedNames(100, 100000, page * 100)));
        }
        answering(pageOf(0, {}))(connection);
    });
    ZoMemoryProxy memory = memoryOf(linkTo(robot.port(), quietOptions()));
    const std::string error = errorOf([&] { memory.getDataListName(); });
    QVERIFY2(contains(error, "the key list is larger than 64 MiB"), error.c_str());
    QCOMPARE(pages.load(), 7); // of 10 MB each
}

void TestKeyList::aPageThatIsTooLargeIsNoKeyList()
{
    const FakeRobot robot(answering(pageOf(0, numberedNames(70, 1000000, 0))));
    const auto broker = linkTo(robot.port(), quietOptions());
    ZoMemoryProxy memory = memoryOf(broker);
    const std::string error = errorOf([&] { memory.getDataListName(); });
    QVERIFY2(contains(error, "the key list is larger than 64 MiB"), error.c_str());
    QVERIFY(broker->isConnected());
}

void TestKeyList::aKeyListOfTinyNamesIsGivenUpForTheMemoryItTakes()
{
    constexpr int namesOfPage = 50000;
    std::atomic<int> pages{0};
    const FakeRobot robot([&pages](FakeConnection& connection) {
        connection.greet();
        while (true) {
            connection.readCommand();
            const int page = pages++;
            connection.send(
                pageOf(page < 20 ? 1 : 0, numberedNames(namesOfPage, 7, page * namesOfPage)));
        }
    });
    ZoMemoryProxy memory = memoryOf(linkTo(robot.port(), quietOptions()));
    const std::string error = errorOf([&] { memory.getDataListName(); });
    QVERIFY2(contains(error, "the key list is larger than 64 MiB"), error.c_str());
    // Each name takes a node, a place and its bytes: two words and a string at the very least.
    constexpr int fewestBytes = 2 * sizeof(void*) + sizeof(std::string) + sizeof(ZoValue);
    QVERIFY2(pages * namesOfPage * fewestBytes < 80 << 20, "more than 80 MiB were taken");
}

void TestKeyList::aServerThatKnowsNoKindsIsAskedForThatOfEachKey()
{
    const FakeRobot robot([](FakeConnection& connection) {
        connection.greet();
        for (;;) {
            const auto command = connection.readCommand();
            if (command[0] == "TYPE")
                connection.send(command[1] == "2" ? "+list\r\n" : "+string\r\n");
            else if (command.size() > 4)
                connection.send("-ERR syntax error\r\n");
            else if (command[1] == "0")
                connection.send(pageOf(1, numberedNames(3, 1, 1)));
            else
                connection.send(pageOf(0, {}));
        }
    });
    ZoMemoryProxy memory = memoryOf(linkTo(robot.port(), quietOptions()));
    std::vector<std::string> names = memory.getDataListName();
    std::sort(names.begin(), names.end());
    QCOMPARE(names, (std::vector<std::string>{"1", "3"}));
}

void TestKeyList::aBadKeyListEndsTheLink_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::newRow("one part") << QByteArray("*1\r\n$1\r\n0\r\n");
    QTest::newRow("no cursor") << QByteArray("*2\r\n$3\r\nfoo\r\n*0\r\n");
    QTest::newRow("long cursor") << QByteArray("*2\r\n$30\r\n" + QByteArray(30, '1') +
                                               "\r\n*0\r\n");
    QTest::newRow("no list") << QByteArray("*2\r\n$1\r\n0\r\n$1\r\na\r\n");
    QTest::newRow("list first") << QByteArray("*2\r\n*0\r\n$1\r\n0\r\n");
    QTest::newRow("a huge list") << QByteArray("*2\r\n$1\r\n0\r\n*2147483647\r\n");
    QTest::newRow("lists in the list") << QByteArray("*2\r\n$1\r\n0\r\n*1\r\n*0\r\n");
    QTest::newRow("nil in the list") << QByteArray("*2\r\n$1\r\n0\r\n*1\r\n$-1\r\n");
    QTest::newRow("a status") << QByteArray("+OK\r\n");
    QTest::newRow("a number") << QByteArray(":0\r\n");
}

void TestKeyList::aBadKeyListEndsTheLink()
{
    QFETCH(QByteArray, reply);
    const FakeRobot robot(answeringOneLink(reply.toStdString()));
    const auto broker = linkTo(robot.port(), quietOptions());
    ZoMemoryProxy memory = memoryOf(broker);
    const std::string error = errorOf([&] { memory.getDataListName(); });
    QVERIFY2(contains(error, "malformed reply to SCAN"), error.c_str());
    QVERIFY(!broker->isConnected());
}

REGISTER_TEST(TestKeyList, QCoreApplication)
#include "tst_key_list.moc"
