// SPDX-License-Identifier: MIT
#include "support/fake_robot.h"
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"
#include "support/robot.h"
#include "support/watched_thread.h"

#include <QtTest>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <future>
#include <mutex>

namespace {

using std::chrono::milliseconds;

volatile std::sig_atomic_t pipeSignals = 0;

std::vector<std::string> manyKeys(int count)
{
    return std::vector<std::string>(static_cast<std::size_t>(count), "Arm/Angle");
}

std::string arrayOf(int size, const std::string& element)
{
    std::string reply = "*" + std::to_string(size) + "\r\n";
    for (int i = 0; i < size; ++i)
        reply += element;
    return reply;
}

} // namespace

/// What a hostile or broken server can do to a link: nothing but end it with a clear error.
class TestConnection : public GuardedTest
{
    Q_OBJECT

private slots:
    void aBadReplyEndsTheLink_data();
    void aBadReplyEndsTheLink();
    void whatMakesAReplyTooLargeIsInvalidAlone();
    void anAnswerThatComesLateServesTheNextCall();
    void anAnswerThatComesLateIsNoneBehindAWrite();
    void drippingBytesDoNotMoveTheDeadline();
    void aReplyThatBreaksOffEndsTheLink();
    void aLateReplyReachesNobody();
    void aReplyTooManyEndsTheLink();
    void pushesChangeNothing();
    void whatTheServerSentIsQuotedWithoutThePassword();
    void anErrorForOneChunkKeepsTheLink();
    void aClosedPeerRaisesNoSignal();
    void oneWhoWaitsInVainForItsTurnLeavesTheLinkUp();
    void errorTextsAreShownWithoutControlCharacters();
};

void TestConnection::aBadReplyEndsTheLink_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QString>("message");
    QTest::newRow("two billion values")
        << QByteArray("*2147483647\r\n") << "2147483647 values for 2";
    QTest::newRow("one too few") << QByteArray("*1\r\n$1\r\n1\r\n") << "1 values for 2 keys";
    QTest::newRow("one too many") << QByteArray("*3\r\n$1\r\n1\r\n$1\r\n1\r\n$1\r\n1\r\n")
                                  << "3 values for 2 keys";
    QTest::newRow("a value of 2 GiB")
        << QByteArray("*2\r\n$1\r\n1\r\n$2147483648\r\n") << "value of \"Leg\" is larger";
    QTest::newRow("garbage") << QByteArray("lorem ipsum\r\n") << "malformed reply";
    QTest::newRow("a status") << QByteArray("+OK\r\n") << "malformed reply";
    QTest::newRow("a number") << QByteArray(":2\r\n") << "malformed reply";
    QTest::newRow("no array") << QByteArray("*-1\r\n") << "malformed reply";
    QTest::newRow("arrays as values") << QByteArray("*2\r\n*1\r\n$1\r\n1\r\n") << "malformed reply";
    QTest::newRow("numbers as values") << QByteArray("*2\r\n:1\r\n:1\r\n") << "malformed reply";
    QTest::newRow("errors as values") << QByteArray("*2\r\n-ERR\r\n-ERR\r\n") << "malformed reply";
}

void TestConnection::aBadReplyEndsTheLink()
{
    QFETCH(QByteArray, reply);
    QFETCH(QString, message);
    const FakeRobot robot(answeringOneLink(reply.toStdString()));
    const auto broker = linkTo(robot.port(), quietOptions());
    ZoMemoryProxy memory = memoryOf(broker);
    const std::string error = errorOf([&] { memory.getListData(requestFor({"Arm", "Leg"})); });
    QVERIFY2(contains(error, message.toStdString()), error.c_str());
    QVERIFY2(contains(error, "127.0.0.1:" + std::to_string(robot.port())), error.c_str());
    QVERIFY(!broker->isConnected());
    QCOMPARE(broker->linkStatus().cause, error);
    QVERIFY(contains(errorOf([&] { memory.getDataListName(); }), error));
}

void TestConnection::whatMakesAReplyTooLargeIsInvalidAlone()
{
    const std::string value = "$1048576\r\n" + std::string(1 << 20, 'x') + "\r\n";
    const FakeRobot robot(answering(arrayOf(70, value)));
    const auto broker = linkTo(robot.port(), quietOptions());
    ZoMemoryProxy memory = memoryOf(broker);
    const ZoValue values = memory.getListData(requestFor(manyKeys(70)));
    QVERIFY(values[62] == ZoValue(std::string(1 << 20, 'x')));
    QVERIFY(values[63] == ZoValue() && values[69] == ZoValue());
    QVERIFY(broker->isConnected());
}

void TestConnection::anAnswerThatComesLateServesTheNextCall()
{
    std::promise<void> hasGivenUp;
    const FakeRobot robot([late = hasGivenUp.get_future().share()](FakeConnection& connection) {
        connection.greet();
        connection.readCommand();
        late.wait();
        connection.send(arrayOf(1, "$1\r\n7\r\n"));
        connection.waitForEnd(); // and says nothing more
    });
    ZoMemoryProxy memory = memoryOf(linkTo(robot.port(), quietOptions(milliseconds(300))));
    const auto before = std::chrono::steady_clock::now();
    const std::string error = errorOf([&] { memory.getListData(requestFor({"Arm"})); });
    QVERIFY2(contains(error, "no reply to MGET within 300 ms"), error.c_str());
    hasGivenUp.set_value();
    ZoListAnswer answer;
    const auto ask = [&] { answer = memory.getListAnswer(requestFor({"Arm"})); };
    bool isAnswered = false; // until it has come, the link is silent
    TRY_VERIFY(isAnswered || (isAnswered = errorOf(ask).empty()));
    QVERIFY(answer.values[0] == ZoValue(7));
    QVERIFY(answer.arrived > before && answer.arrived < std::chrono::steady_clock::now());
    QVERIFY(!errorOf([&] { memory.getListData(requestFor({"Arm"})); }).empty()); // once
}

void TestConnection::anAnswerThatComesLateIsNoneBehindAWrite()
{
    std::promise<void> hasGivenUp;
    const FakeRobot robot([late = hasGivenUp.get_future().share()](FakeConnection& connection) {
        connection.greet();
        connection.readCommand();
        late.wait();
        connection.send(arrayOf(1, "$1\r\n7\r\n"));
        connection.readCommand();
        connection.send("+OK\r\n");
        connection.readCommand();
        connection.send(arrayOf(1, "$1\r\n8\r\n"));
        connection.waitForEnd();
    });
    ZoMemoryProxy memory = memoryOf(linkTo(robot.port(), quietOptions(milliseconds(1000))));
    errorOf([&] { memory.getListData(requestFor({"Arm"})); });
    hasGivenUp.set_value();
    bool isSet = false; // until it has come, the link is silent
    const auto set = [&] { memory.setData("Arm", 8); };
    TRY_VERIFY(isSet || (isSet = errorOf(set).empty()));
    QVERIFY(memory.getListData(requestFor({"Arm"}))[0] == ZoValue(8));
}

void TestConnection::drippingBytesDoNotMoveTheDeadline()
{
    const FakeRobot robot([](FakeConnection& connection) {
        connection.greet();
        connection.readCommand();
        connection.sendSlowly("*1\r\n$100000\r\n" + std::string(100000, 'x') + "\r\n");
    });
    const auto broker = linkTo(robot.port(), quietOptions(milliseconds(300)));
    ZoMemoryProxy memory = memoryOf(broker);
    QElapsedTimer timer;
    timer.start();
    const std::string error = errorOf([&] { memory.getListData(requestFor({"Arm"})); });
    QVERIFY2(contains(error, "no reply to MGET within 300 ms"), error.c_str());
    QVERIFY2(timer.elapsed() < patience, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(broker->isConnected()); // a robot that is answering slowly is answering
}

void TestConnection::aReplyThatBreaksOffEndsTheLink()
{
    const FakeRobot robot([](FakeConnection& connection) {
        if (connection.number() > 0)
            connection.waitForEnd();
        connection.greet();
        connection.readCommand();
        connection.send("*2\r\n$1\r\n1\r\n$5\r\nab");
    });
    const auto broker = linkTo(robot.port(), quietOptions());
    ZoMemoryProxy memory = memoryOf(broker);
    const std::string error = errorOf([&] { memory.getListData(requestFor({"Arm", "Leg"})); });
    QVERIFY2(contains(error, "closed the connection"), error.c_str());
    QVERIFY(!broker->isConnected());
}

void TestConnection::aLateReplyReachesNobody()
{
    std::promise<void> isLate;
    std::atomic<bool> answeredLate{false};
    const FakeRobot robot([&](FakeConnection& connection) {
        connection.greet();
        if (connection.number() == 0) {
            connection.readCommand();
            answeredLate = isReady(isLate.get_future());
            connection.send("*1\r\n$1\r\n1\r\n");
        }
        while (true) {
            connection.readCommand();
            connection.send("*1\r\n$1\r\n2\r\n");
        }
    });
    const auto broker = linkTo(robot.port(), quietOptions(milliseconds(500)));
    ZoMemoryProxy memory = memoryOf(broker);
    const std::string error = errorOf([&] { memory.getListData(requestFor({"Arm"})); });
    isLate.set_value();
    QVERIFY2(contains(error, "no reply"), error.c_str());
    ZoValue values;
    TRY_VERIFY(errorOf([&] { values = memory.getListData(requestFor({"Leg"})); }).empty());
    QVERIFY(values[0] == ZoValue(2));
    QVERIFY(answeredLate);
}

void TestConnection::aReplyTooManyEndsTheLink()
{
    const FakeRobot robot(answeringOneLink("*1\r\n$1\r\n1\r\n*1\r\n$1\r\n2\r\n"));
    const auto broker = linkTo(robot.port(), quietOptions());
    ZoMemoryProxy memory = memoryOf(broker);
    errorOf([&] { memory.getListData(requestFor({"Arm"})); });
    TRY_VERIFY(!broker->isConnected());
    QVERIFY(contains(broker->linkStatus().cause, "more than was asked for"));
}

void TestConnection::pushesChangeNothing()
{
    const std::string push = ">2\r\n$10\r\ninvalidate\r\n*1\r\n$3\r\nArm\r\n";
    const std::string reply = push + push + "*1\r\n$1\r\n1\r\n" + push;
    const FakeRobot robot([&](FakeConnection& connection) {
        connection.greet();
        connection.send(reply.substr(0, 8)); // and the rest while a reply is awaited
        connection.readCommand();
        connection.send(reply.substr(8));
        connection.readCommand();
        connection.send(reply);
        connection.waitForEnd();
    });
    const auto broker = linkTo(robot.port(), quietOptions());
    ZoMemoryProxy memory = memoryOf(broker);
    for (int poll = 0; poll < 2; ++poll)
        QVERIFY(memory.getListData(requestFor({"Arm"}))[0] == ZoValue(1));
    QVERIFY(broker->isConnected());
}

void TestConnection::whatTheServerSentIsQuotedWithoutThePassword()
{
    const FakeRobot robot([](FakeConnection& connection) {
        connection.readCommand();
        connection.send("250 hello \x1b, AUTH open sesame?\r\n");
        connection.waitForEnd();
    });
    ZoBrokerOptions options = patientOptions();
    options.password = "open sesame";
    const std::string error =
        errorOf([&] { ZoBroker::create("TestBroker", "127.0.0.1", robot.port(), options); });
    QVERIFY2(contains(error, "malformed reply: an unknown type: \"250 hello ?, AUTH ***?\""),
             error.c_str());
}

void TestConnection::anErrorForOneChunkKeepsTheLink()
{
    std::atomic<bool> isLoading{true};
    const std::string chunk = arrayOf(1000, "$1\r\n1\r\n");
    const FakeRobot robot([&](FakeConnection& connection) {
        connection.greet();
        while (true) {
            connection.readCommand();
            connection.send(chunk);
            connection.readCommand();
            connection.send(isLoading ? "-LOADING the robot wakes up\r\n" : chunk);
        }
    });
    const auto broker = linkTo(robot.port(), quietOptions());
    ZoMemoryProxy memory = memoryOf(broker);
    const ZoValue request = requestFor(manyKeys(2000));
    const std::string error = errorOf([&] { memory.getListData(request); });
    QVERIFY2(contains(error, "refuses MGET: LOADING the robot wakes up"), error.c_str());
    QVERIFY(broker->isConnected());
    isLoading = false;
    QVERIFY(memory.getListData(request)[1999] == ZoValue(1));
}

void TestConnection::aClosedPeerRaisesNoSignal()
{
    const auto before = std::signal(SIGPIPE, [](int) { pipeSignals = 1; });
    const FakeRobot robot([](FakeConnection& connection) {
        connection.greet();
        connection.readBytes(1); // and ends: most of what is written meets a closed socket
    });
    for (int round = 0; round < 20; ++round) {
        ZoMemoryProxy memory = memoryOf(linkTo(robot.port(), quietOptions()));
        QVERIFY(!errorOf([&] { memory.setText("Arm", std::string(1 << 20, 'x')); }).empty());
    }
    std::signal(SIGPIPE, before);
    QCOMPARE(int(pipeSignals), 0);
}

void TestConnection::oneWhoWaitsInVainForItsTurnLeavesTheLinkUp()
{
    std::mutex mutex;
    std::vector<std::string> arrived;
    std::atomic<bool> isEnough{false};
    std::promise<void> isAsked;
    const std::string value = "$1\r\n1\r\n";
    const FakeRobot robot([&](FakeConnection& connection) {
        connection.greet();
        if (connection.number() == 0) {
            connection.readCommand();
            connection.send("*1000\r\n");
            isAsked.set_value();
            int sent = 0;
            for (; !isEnough && sent < 999; ++sent)
                connection.sendSlowly(value);
            for (; sent < 1000; ++sent)
                connection.send(value);
        }
        while (true) {
            const auto words = connection.readCommand();
            {
                const std::lock_guard<std::mutex> lock(mutex);
                arrived.push_back(words[1]);
            }
            connection.send("+OK\r\n");
        }
    });
    ZoBrokerOptions options = quietOptions(milliseconds(1000));
    options.timeoutPerKey = milliseconds(200); // a thousand keys have 200 s
    const auto broker = linkTo(robot.port(), options);
    ZoMemoryProxy memory = memoryOf(broker);
    ZoValue values;
    WatchedThread first([&] { values = memory.getListData(requestFor(manyKeys(1000))); });
    QVERIFY(isReady(isAsked.get_future()));
    const std::string error = errorOf([&] { memory.setText("Leg", "1"); });
    isEnough = true;
    first.join();
    QVERIFY2(contains(error, "no reply to SET"), error.c_str());
    QCOMPARE(values.getSize(), 1000);
    QVERIFY(broker->isConnected());
    // It was sent behind the other, and its late reply belongs to nobody.
    TRY_VERIFY(errorOf([&] { memory.setText("Arm", "1"); }).empty());
    const std::lock_guard<std::mutex> lock(mutex);
    QCOMPARE(std::count(arrived.begin(), arrived.end(), "Leg"), std::ptrdiff_t{1});
}

void TestConnection::errorTextsAreShownWithoutControlCharacters()
{
    const FakeRobot robot(answering("-ERR \x1b[2Jgone\r\n"));
    ZoMemoryProxy memory = memoryOf(linkTo(robot.port(), quietOptions()));
    const std::string error = errorOf([&] { memory.setText("Arm", "1"); });
    QVERIFY2(contains(error, "refuses SET \"Arm\": ERR ?[2Jgone"), error.c_str());
}

REGISTER_TEST(TestConnection, QCoreApplication)
#include "tst_connection.moc"
