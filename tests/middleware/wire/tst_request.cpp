// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/redis_server.h"
#include "support/register_test.h"
#include "support/reply_recorder.h"

#include <wire/reply_reader.h>
#include <wire/request.h>

#include <QtTest>

using namespace zo;

/// How a command becomes the bytes that the robot reads.
class TestRequest : public GuardedTest
{
    Q_OBJECT

private slots:
    void eachWordHasItsSize();
    void commandsAreAppended();
    void anyByteMayBeInAWord();
    void theRobotReadsIt();
};

void TestRequest::eachWordHasItsSize()
{
    QCOMPARE(encodeCommand({"PING"}), std::string("*1\r\n$4\r\nPING\r\n"));
    QCOMPARE(encodeCommand({"SET", "Arm/Angle", ""}),
             std::string("*3\r\n$3\r\nSET\r\n$9\r\nArm/Angle\r\n$0\r\n\r\n"));
}

void TestRequest::commandsAreAppended()
{
    std::string bytes = "before";
    appendCommand({"A"}, bytes);
    appendCommand({std::string_view()}, bytes);
    QCOMPARE(bytes, std::string("before*1\r\n$1\r\nA\r\n*1\r\n$0\r\n\r\n"));
}

void TestRequest::anyByteMayBeInAWord()
{
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    const std::string bytes = encodeCommand({"\r\n", all, std::string(100000, '$')});
    std::string log;
    ReplyRecorder recorder(log);
    ReplyReader reader;
    reader.expect(1, recorder);
    QVERIFY(reader.read(bytes).empty());
    QVERIFY(reader.isComplete());
    QCOMPARE(log, "0/0/0 an array 3\n0/1/0 a text \r\n\n0/1/1 a text " + all + "\n0/1/2 a text " +
                      std::string(100000, '$') + "\n");
}

void TestRequest::theRobotReadsIt()
{
    const RedisServer server;
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    QCOMPARE(server.command({"ECHO", all}), all);
    QCOMPARE(server.command({"ECHO", ""}), std::string());
    std::vector<std::string> words{"MSET"};
    for (int i = 0; i < 20000; ++i)
        words.push_back(std::to_string(i));
    server.command(words);
    QCOMPARE(server.command({"DBSIZE"}), std::string("10000"));
}

REGISTER_TEST(TestRequest, NoApplication)
#include "tst_request.moc"
