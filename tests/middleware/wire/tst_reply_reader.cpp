// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/random_replies.h"
#include "support/reference_replies.h"
#include "support/register_test.h"
#include "support/reply_counter.h"
#include "support/reply_recorder.h"

#include <wire/reply_reader.h>

#include <QtTest>

using namespace zo;

namespace {

class Refuser : public ReplyCounter
{
public:
    bool take(const ReplyPlace& place, const ReplyPiece& piece) override
    {
        ReplyCounter::take(place, piece);
        return refuse("no!");
    }
};

ReplyReading readAtOnce(std::string_view bytes, int replies = 1)
{
    return readInBlocks(bytes, replies, [&] { return bytes.size(); });
}

ReplyReading readByteByByte(std::string_view bytes, int replies = 1)
{
    return readInBlocks(bytes, replies, [] { return std::size_t{1}; });
}

const char oldKinds[] = "*4\r\n$3\r\na\r\n\r\n:-7\r\n$-1\r\n*2\r\n$0\r\n\r\n*-1\r\n"
                        "+OK\r\n-ERR no\r\n*0\r\n$12\r\nhello, world\r\n";
const char oldKindsLog[] = "0/0/0 an array 4\n0/1/0 a text a\r\n\n0/1/1 a number -7 -7\n0/1/2 nil\n"
                           "0/1/3 an array 2\n0/2/0 a text\n0/2/1 nil\n"
                           "1/0/0 a status OK\n2/0/0 an error ERR no\n3/0/0 an array\n"
                           "4/0/0 a text hello, world\n";

const char newKinds[] = "%2\r\n+a\r\n#t\r\n+b\r\n#f\r\n"
                        "~2\r\n,0.5\r\n,-inf\r\n"
                        "(-123456789012345678901234567890\r\n"
                        "!6\r\nERR no\r\n"
                        "=9\r\ntxt:a\r\nb!\r\n"
                        "_\r\n"
                        "|1\r\n+ttl\r\n:60\r\n*1\r\n|1\r\n+ttl\r\n*1\r\n_\r\n:5\r\n";
const char newKindsLog[] = "0/0/0 a map 2\n0/1/0 a status a\n0/1/1 a boolean 1 t\n"
                           "0/1/2 a status b\n0/1/3 a boolean f\n"
                           "1/0/0 a set 2\n1/1/0 a double 0.500000 0.5\n1/1/1 a double -inf -inf\n"
                           "2/0/0 a large integer -123456789012345678901234567890\n"
                           "3/0/0 an error ERR no\n"
                           "4/0/0 a text for people a\r\nb!\n"
                           "5/0/0 nil\n"
                           "6/0/0 an array 1\n6/1/0 a number 5 5\n";

} // namespace

/// How the bytes of a connection become replies, whatever the bytes.
class TestReplyReader : public GuardedTest
{
    Q_OBJECT

private slots:
    void itReadsEveryKindOfReply_data();
    void itReadsEveryKindOfReply();
    void itDoesNotMatterHowTheBytesArrive_data();
    void itDoesNotMatterHowTheBytesArrive();
    void itReadsOneExchangeAfterTheOther();
    void itLeavesWhatNobodyAskedFor();
    void pushesMayComeBetweenReplies();
    void aPushMayComeWhileNothingIsAwaited();
    void pushesThatNobodyTakesAreRead();
    void aPushInsideAReplyIsRefused_data();
    void aPushInsideAReplyIsRefused();
    void itRefusesWhatIsNoReply_data();
    void itRefusesWhatIsNoReply();
    void itSaysWhatTheServerSent_data();
    void itSaysWhatTheServerSent();
    void itReadsNumbers_data();
    void itReadsNumbers();
    void itReadsRandomRepliesByTheLetter();
    void theSinkMayRefuse();
};

void TestReplyReader::itReadsEveryKindOfReply_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("replies");
    QTest::addColumn<QByteArray>("log");
    QTest::newRow("version 2") << QByteArray(oldKinds) << 5 << QByteArray(oldKindsLog);
    QTest::newRow("version 3") << QByteArray(newKinds) << 7 << QByteArray(newKindsLog);
}

void TestReplyReader::itReadsEveryKindOfReply()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, replies);
    QFETCH(QByteArray, log);
    const ReplyReading reading = readAtOnce(bytes.toStdString(), replies);
    QCOMPARE(reading.end, ReplyReading::Whole);
    QCOMPARE(reading.left, std::size_t{0});
    QCOMPARE(QByteArray::fromStdString(reading.log), log);
}

void TestReplyReader::itDoesNotMatterHowTheBytesArrive_data()
{
    itReadsEveryKindOfReply_data();
}

void TestReplyReader::itDoesNotMatterHowTheBytesArrive()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, replies);
    QFETCH(QByteArray, log);
    const std::string text = bytes.toStdString();
    for (std::size_t first = 1; first < text.size(); ++first) {
        for (const std::size_t others : {std::size_t{1}, std::size_t{7}, text.size()}) {
            std::size_t next = first;
            const ReplyReading reading =
                readInBlocks(text, replies, [&] { return std::exchange(next, others); });
            QCOMPARE(reading.end, ReplyReading::Whole);
            QCOMPARE(QByteArray::fromStdString(reading.log), log);
        }
        QCOMPARE(readByteByByte(text.substr(0, first), replies).end, ReplyReading::Unfinished);
    }
}

void TestReplyReader::itReadsOneExchangeAfterTheOther()
{
    ReplyReader reader;
    for (int i = 0; i < 1000; ++i) {
        std::string log;
        ReplyRecorder recorder(log);
        reader.expect(1, recorder);
        QVERIFY(!reader.isComplete());
        QVERIFY(reader.read("+OK\r\n").empty());
        QVERIFY(reader.isComplete());
        QCOMPARE(log, std::string("0/0/0 a status OK\n"));
    }
}

void TestReplyReader::itLeavesWhatNobodyAskedFor()
{
    std::string log;
    ReplyRecorder recorder(log);
    ReplyReader reader;
    QCOMPARE(reader.read("+early\r\n"), std::string_view("+early\r\n"));
    reader.expect(1, recorder);
    QCOMPARE(reader.read("+1\r\n+2\r\n+3\r\n"), std::string_view("+2\r\n+3\r\n"));
    QVERIFY(reader.isComplete() && !reader.hasProblem());
    reader.expect(1, recorder);
    QCOMPARE(reader.read("+2\r\n|0\r\n+3\r\n"), std::string_view("|0\r\n+3\r\n"));
    QCOMPARE(log, std::string("0/0/0 a status 1\n0/0/0 a status 2\n"));
}

void TestReplyReader::pushesMayComeBetweenReplies()
{
    const std::string push = ">2\r\n$10\r\ninvalidate\r\n*1\r\n$3\r\nArm\r\n";
    const std::string bytes = push + "+1\r\n" + push + push + "*1\r\n:2\r\n" + push;
    const auto logOf = [](const std::string& reply) {
        return "push " + reply + "/0/0 a push 2\npush " + reply + "/1/0 a text invalidate\npush " +
               reply + "/1/1 an array 1\npush " + reply + "/2/0 a text Arm\n";
    };
    const std::string log = logOf("0") + "0/0/0 a status 1\n" + logOf("1") + logOf("1") +
                            "1/0/0 an array 1\n1/1/0 a number 2 2\n" + logOf("2");
    for (const ReplyReading& reading : {readAtOnce(bytes, 2), readByteByByte(bytes, 2)}) {
        QCOMPARE(reading.end, ReplyReading::Whole);
        QCOMPARE(reading.log, log);
    }
}

void TestReplyReader::aPushMayComeWhileNothingIsAwaited()
{
    std::string log;
    ReplyRecorder pushes(log, "push ");
    ReplyReader reader(&pushes);
    QVERIFY(reader.read(">1\r\n+he").empty());
    ReplyRecorder answers(log);
    reader.expect(1, answers); // in the middle of it
    QVERIFY(reader.read("llo\r\n+OK\r\n").empty());
    QVERIFY(reader.isComplete());
    QCOMPARE(log,
             std::string("push 0/0/0 a push 1\npush 0/1/0 a status hello\n0/0/0 a status OK\n"));
}

void TestReplyReader::pushesThatNobodyTakesAreRead()
{
    std::string log;
    ReplyRecorder answers(log);
    ReplyReader reader;
    reader.expect(1, answers);
    QVERIFY(reader.read(">2\r\n+a\r\n*1\r\n" + textOf(2 << 20) + "+OK\r\n>0\r\n").empty());
    QVERIFY(!reader.hasProblem());
    QCOMPARE(log, std::string("0/0/0 a status OK\n"));
}

void TestReplyReader::aPushInsideAReplyIsRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("array") << QByteArray("*2\r\n+1\r\n>1\r\n+a\r\n+2\r\n");
    QTest::newRow("push") << QByteArray(">1\r\n>1\r\n+a\r\n");
    QTest::newRow("attribute") << QByteArray("|1\r\n+a\r\n>1\r\n+a\r\n");
    QTest::newRow("behind an attribute") << QByteArray("|1\r\n+a\r\n+b\r\n>1\r\n+a\r\n");
}

void TestReplyReader::aPushInsideAReplyIsRefused()
{
    QFETCH(QByteArray, bytes);
    const std::string text = "malformed reply: a push inside of a reply";
    QCOMPARE(problemWith(bytes.toStdString()).text, text);
    QCOMPARE(problemWith(bytes.toStdString(), 1).text, text);
}

void TestReplyReader::itRefusesWhatIsNoReply_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("another protocol") << QByteArray("HTTP/1.1 400 Bad Request\r\n");
    QTest::newRow("TLS") << QByteArray("\x15\x03\x03\x00\x02\x02\x46", 7);
    QTest::newRow("zero bytes") << QByteArray(100, '\0');
    QTest::newRow("text longer than announced") << QByteArray("$1\r\nabcdef\r\n");
    QTest::newRow("text with a wrong end") << QByteArray("$1\r\na\rb");
    QTest::newRow("skipped text longer than announced")
        << QByteArray("$2000000\r\n") + QByteArray(2000001, 'x') + "\r\n";
    QTest::newRow("line without end") << QByteArray("+" + QByteArray(5000, 'x'));
    QTest::newRow("line too long") << QByteArray("+" + QByteArray(4097, 'x') + "\r\n");
    QTest::newRow("double without end") << QByteArray("," + QByteArray(5000, '1'));
    QTest::newRow("size without end") << QByteArray("$" + QByteArray(100, '0'));
    QTest::newRow("count without end") << QByteArray("*" + QByteArray(100000, '1'));
    QTest::newRow("integer without end") << QByteArray(":" + QByteArray(100, '1'));
    QTest::newRow("line feed alone") << QByteArray("+OK\n");
    QTest::newRow("line feed at once") << QByteArray("+\n");
    QTest::newRow("line feed for a size") << QByteArray("$\n");
    QTest::newRow("carriage return alone") << QByteArray("+O\rK\r\n");
    QTest::newRow("two carriage returns") << QByteArray("+OK\r\r\n");
    QTest::newRow("a null that says something") << QByteArray("_x\r\n");
    QTest::newRow("a third boolean") << QByteArray("#x\r\n");
    QTest::newRow("a long boolean") << QByteArray("#true\r\n");
    QTest::newRow("a verbatim text without format") << QByteArray("=4\r\nabcd\r\n");
    QTest::newRow("a short verbatim text") << QByteArray("=3\r\ntxt\r\n");
    QTest::newRow("a verbatim text before a number") << QByteArray("=1\r\na\r\n:5\r\n");
    QTest::newRow("elements without end") << QByteArray("*1\r\n").repeated(20);
    QTest::newRow("streamed text") << QByteArray("$?\r\n;4\r\nabcd\r\n;0\r\n");
    QTest::newRow("a part of a streamed text") << QByteArray(";4\r\nabcd\r\n");
    QTest::newRow("streamed array") << QByteArray("*?\r\n:1\r\n.\r\n");
    QTest::newRow("streamed map") << QByteArray("%?\r\n");
    QTest::newRow("streamed set") << QByteArray("~?\r\n");
    QTest::newRow("streamed push") << QByteArray(">?\r\n");
    QTest::newRow("the end of a stream") << QByteArray(".\r\n");
    const std::vector<QByteArray> noLengths{"",
                                            "-",
                                            "-2",
                                            "-0",
                                            "-10",
                                            "+1",
                                            "01",
                                            "00",
                                            "1 ",
                                            " 1",
                                            "1\t",
                                            "1x",
                                            "x",
                                            "?",
                                            "0x",
                                            "1e1",
                                            "1.0",
                                            "9223372036854775808",
                                            "18446744073709551615",
                                            "18446744073709551617",
                                            "4294967297",
                                            "-9223372036854775809",
                                            "99999999999999999999999999999"};
    for (const char type : {'$', '*', '%', '~', '>', '|', '=', '!'}) {
        for (const QByteArray& length : noLengths)
            QTest::newRow(QByteArray(1, type) + length) << type + length + "\r\n";
    }
    for (const char type : {'%', '~', '>', '|', '=', '!'})
        QTest::newRow(QByteArray(1, type) + "-1") << type + QByteArray("-1\r\n");
}

void TestReplyReader::itRefusesWhatIsNoReply()
{
    QFETCH(QByteArray, bytes);
    const std::string atOnce = problemWith(bytes.toStdString()).text;
    QVERIFY(!atOnce.empty());
    QCOMPARE(problemWith(bytes.toStdString(), 1).text, atOnce);
}

void TestReplyReader::itSaysWhatTheServerSent_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("sent");
    QTest::newRow("type") << QByteArray("HTTP/1.1 400\r\nDate") << QByteArray("an unknown type")
                          << QByteArray("HTTP/1.1 400");
    QTest::newRow("length") << QByteArray("*2x\r\n+a") << QByteArray("no length")
                            << QByteArray("*2x");
    QTest::newRow("number") << QByteArray(":12a\r\n+a") << QByteArray("no number")
                            << QByteArray(":12a");
    QTest::newRow("boolean") << QByteArray("#u\r\n+a") << QByteArray("no boolean")
                             << QByteArray("#u");
    QTest::newRow("end") << QByteArray("+OK\n+a") << QByteArray("a line with a wrong end")
                         << QByteArray("+OK");
    QTest::newRow("line") << QByteArray("$" + QByteArray(99, '1')) << QByteArray("a line too long")
                          << QByteArray("$" + QByteArray(99, '1'));
}

void TestReplyReader::itSaysWhatTheServerSent()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, sent);
    const ReplyProblem problem = problemWith(bytes.toStdString());
    QCOMPARE(QByteArray::fromStdString(problem.text), "malformed reply: " + text);
    QCOMPARE(QByteArray::fromStdString(problem.sent), sent);
}

void TestReplyReader::itReadsNumbers_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("log"); // empty: refused
    const auto row = [](const char* line, const char* log) {
        QTest::newRow(line) << QByteArray(line) << QByteArray(log);
    };
    row(":0", "a number 0");
    row(":+7", "a number 7 +7");
    row(":-9223372036854775808", "a number -9223372036854775808 -9223372036854775808");
    row(":9223372036854775807", "a number 9223372036854775807 9223372036854775807");
    for (const char* line : {":", ":-", ":+", ":+-1", ":--1", ": 1", ":1 ", ":0x1", ":1.0",
                             ":9223372036854775808", ":-9223372036854775809"})
        row(line, "");
    row(",1", "a double 1.000000 1");
    row(",+1.5", "a double 1.500000 +1.5");
    row(",-2.5e3", "a double -2500.000000 -2.5e3");
    row(",25E-1", "a double 2.500000 25E-1");
    row(",inf", "a double inf inf");
    row(",-inf", "a double -inf -inf");
    row(",nan", "a double nan nan");
    row(",-nan", "a double nan -nan");
    for (const char* line : {",", ",.", ",.5", ",1.", ",1e", ",1e+", ",+-1", ",1,5", ",0x1p3",
                             ",Inf", ",infinity", ",+inf", ",nan(1)", ",1 ", ",1e999", ",1e-999"})
        row(line, "");
    row("(0", "a large integer 0");
    row("(+99999999999999999999", "a large integer +99999999999999999999");
    for (const char* line : {"(", "(-", "(1.5", "(1e5", "(--1"})
        row(line, "");
}

void TestReplyReader::itReadsNumbers()
{
    QFETCH(QByteArray, line);
    QFETCH(QByteArray, log);
    const ReplyReading reading = readAtOnce((line + "\r\n").toStdString());
    QCOMPARE(reading.end, log.isEmpty() ? ReplyReading::Refused : ReplyReading::Whole);
    if (line == ":0" || line == "(0")
        QVERIFY(reading.log.find(" 0\n") != std::string::npos);
    if (!log.isEmpty())
        QCOMPARE(QByteArray::fromStdString(reading.log), "0/0/0 " + log + "\n");
}

// Replies at random, a part of them damaged, in blocks at random.
void TestReplyReader::itReadsRandomRepliesByTheLetter()
{
    int ends[3] = {0, 0, 0};
    RandomReplies random(1);
    for (int round = 0; round < 30000; ++round) {
        const int replies = static_cast<int>(random.below(4));
        const std::string bytes = random.replies(replies);
        const std::size_t largest = random.below(2) == 0 ? 1 + random.below(4) : bytes.size() + 1;
        const ReplyReading reading =
            readInBlocks(bytes, replies, [&] { return 1 + random.below(largest); });
        const ReplyReading wanted = readByTheLetter(bytes, replies);
        ++ends[reading.end];
        const bool isSame = reading.end == wanted.end && reading.log == wanted.log &&
                            (reading.end != ReplyReading::Whole || reading.left == wanted.left);
        QVERIFY2(isSame, (bytes + "\n----\n" + reading.log + "----\n" + wanted.log).c_str());
    }
    QVERIFY(ends[ReplyReading::Whole] > 5000);
    QVERIFY(ends[ReplyReading::Unfinished] > 1000);
    QVERIFY(ends[ReplyReading::Refused] > 1000);
}

void TestReplyReader::theSinkMayRefuse()
{
    Refuser refuser;
    ReplyReader reader;
    reader.expect(1, refuser);
    reader.read("*2147483647\r\n+OK\r\n");
    QCOMPARE(reader.problem().text, std::string("no!"));
    QCOMPARE(refuser.others, 1);
    QVERIFY(!reader.isComplete());
    QCOMPARE(reader.read("+OK\r\n"), std::string_view("+OK\r\n"));
    ReplyReader another;
    another.expect(1, refuser);
    another.read("+OK\r\n");
    QVERIFY(another.hasProblem() && !another.isComplete());
}

REGISTER_TEST(TestReplyReader, NoApplication)
#include "tst_reply_reader.moc"
