// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <memory/notice_sink.h>
#include <memory/notices_set_up.h>

#include <wire/reply_reader.h>

#include <QtTest>

using namespace zo;

namespace {

/// What the server is asked in turn when it answers so.
QStringList asked(const std::vector<std::string>& answers)
{
    NoticesSetUp setUp;
    setUp.begin();
    QStringList names;
    for (const std::string& answer : answers) {
        const auto question = setUp.next();
        if (!question)
            break;
        names += question->name;
        ReplyReader reader;
        reader.expect(question->replies, *question->sink);
        reader.read(answer);
        setUp.answered();
    }
    if (setUp.isDone())
        names += "done";
    return names;
}

std::string helloOf(const std::string& version)
{
    return "%3\r\n$6\r\nserver\r\n$5\r\nredis\r\n$7\r\nversion\r\n$" +
           std::to_string(version.size()) + "\r\n" + version + "\r\n$5\r\nproto\r\n:3\r\n";
}

/// What is told of these bytes: keys, and "*" for all.
QStringList noticed(const std::string& bytes)
{
    QStringList keys;
    NoticeSink sink(
        [&](const std::string* key) { keys += key ? QString::fromStdString(*key) : "*"; });
    ReplyReader reader(&sink);
    reader.read(bytes);
    return keys;
}

} // namespace

/// How a server is asked for notices, and what its notices say.
class TestNoticesSetUp : public GuardedTest
{
    Q_OBJECT

private slots:
    void aServerOfTheRightVersionIsAskedForThem_data();
    void aServerOfTheRightVersionIsAskedForThem();
    void aRefusalEndsIt();
    void nothingIsAskedBeforeTheLinkIsUpOrAfterwards();
    void aNoticeNamesKeysOrAll_data();
    void aNoticeNamesKeysOrAll();
};

void TestNoticesSetUp::aServerOfTheRightVersionIsAskedForThem_data()
{
    QTest::addColumn<QByteArray>("version");
    QTest::addColumn<bool>("isAsked");
    QTest::newRow("6.2.14") << QByteArray("6.2.14") << false;
    QTest::newRow("7.0.4") << QByteArray("7.0.4") << false;
    QTest::newRow("7.0.5") << QByteArray("7.0.5") << true;
    QTest::newRow("7.0.15") << QByteArray("7.0.15") << true;
    QTest::newRow("7.2") << QByteArray("7.2") << true;
    QTest::newRow("8.0.2") << QByteArray("8.0.2") << true;
    QTest::newRow("10.0.0-rc1") << QByteArray("10.0.0-rc1") << true;
    QTest::newRow("no number") << QByteArray("unstable") << false;
    QTest::newRow("none") << QByteArray() << false;
    QTest::newRow("too many digits") << QByteArray("99999999999.0.0") << false;
    QTest::newRow("negative") << QByteArray("-8.0.0") << false;
}

void TestNoticesSetUp::aServerOfTheRightVersionIsAskedForThem()
{
    QFETCH(QByteArray, version);
    QFETCH(bool, isAsked);
    const QStringList expected =
        isAsked ? QStringList{"HELLO", "CLIENT TRACKING", "CLIENT CACHING", "done"}
                : QStringList{"HELLO"};
    QCOMPARE(asked({helloOf(version.toStdString()), "+OK\r\n", "+OK\r\n+PONG\r\n"}), expected);
}

void TestNoticesSetUp::aRefusalEndsIt()
{
    const std::string refusal = "-NOPERM no\r\n";
    QCOMPARE(asked({refusal, "+OK\r\n"}), QStringList{"HELLO"});
    QCOMPARE(asked({helloOf("7.0.15"), refusal}), QStringList({"HELLO", "CLIENT TRACKING"}));
    // The notices that nobody can leave out are taken back.
    QCOMPARE(asked({helloOf("7.0.15"), "+OK\r\n", refusal + "+PONG\r\n", refusal}),
             QStringList({"HELLO", "CLIENT TRACKING", "CLIENT CACHING", "CLIENT TRACKING"}));
    QCOMPARE(asked({"+PONG\r\n", "+OK\r\n"}), QStringList{"HELLO"});
}

void TestNoticesSetUp::nothingIsAskedBeforeTheLinkIsUpOrAfterwards()
{
    NoticesSetUp setUp;
    QVERIFY(!setUp.isDue() && !setUp.next());
    setUp.begin();
    QVERIFY(setUp.isDue());
    setUp.end();
    QVERIFY(!setUp.isDue() && !setUp.next());
}

void TestNoticesSetUp::aNoticeNamesKeysOrAll_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("keys");
    const QByteArray begin = ">2\r\n$10\r\ninvalidate\r\n";
    QTest::newRow("one key") << begin + "*1\r\n$1\r\na\r\n" << QStringList{"a"};
    QTest::newRow("two keys") << begin + "*2\r\n$1\r\na\r\n$1\r\nb\r\n" << QStringList{"a", "b"};
    QTest::newRow("no key") << begin + "*0\r\n" << QStringList();
    QTest::newRow("a flush") << begin + "_\r\n" << QStringList{"*"};
    QTest::newRow("a flush in the old way") << begin + "$-1\r\n" << QStringList{"*"};
    QTest::newRow("an odd key") << begin + "*1\r\n:3\r\n" << QStringList{"*"};
    QTest::newRow("something else")
        << QByteArray(">3\r\n$7\r\nmessage\r\n$1\r\na\r\n*1\r\n$1\r\nb\r\n") << QStringList();
    QTest::newRow("nothing") << QByteArray(">0\r\n") << QStringList();
    QTest::newRow("two") << begin + "_\r\n" + begin + "*1\r\n$1\r\na\r\n" << QStringList{"*", "a"};
}

void TestNoticesSetUp::aNoticeNamesKeysOrAll()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, keys);
    QCOMPARE(noticed(bytes.toStdString()), keys);
}

REGISTER_TEST(TestNoticesSetUp, NoApplication)
#include "tst_notices_set_up.moc"
