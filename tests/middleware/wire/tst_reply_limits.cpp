// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/reference_replies.h"
#include "support/register_test.h"
#include "support/reply_counter.h"

#include <wire/limits.h>
#include <wire/reply_reader.h>

#include <QtTest>

#include <algorithm>

using namespace zo;

namespace {

/// Lets `reader` read so many texts of this size.
void skipTexts(ReplyReader& reader, int texts, std::size_t size)
{
    static const std::string block(std::size_t{16} << 20, 'x');
    for (int text = 0; text < texts; ++text) {
        reader.read("$" + std::to_string(size) + "\r\n");
        for (std::size_t left = size; left > 0; left -= std::min(left, block.size()))
            reader.read(std::string_view(block).substr(0, left));
        reader.read("\r\n");
    }
}

} // namespace

/// How large replies may be, and how deep.
class TestReplyLimits : public GuardedTest
{
    Q_OBJECT

private slots:
    void aLargeTextIsSkippedAndTheOthersAreExact();
    void itTakesATextOfTheLargestSize();
    void noServerHoldsATextSoLarge();
    void textsBeyondTheLimitAreSkipped_data();
    void textsBeyondTheLimitAreSkipped();
    void itRefusesALargeReply();
    void eachExchangeBeginsItsCountsAnew();
    void whatIsSkippedDoesNotMakeAReplyLarge();
    void whatIsSkippedHasItsLimit_data();
    void whatIsSkippedHasItsLimit();
    void eachExchangeSkipsAnew();
    void ofALargePushTextsAreSkippedToo();
    void itNestsToItsLimit();
    void itCountsTheElementsOfAllLevels();
};

void TestReplyLimits::aLargeTextIsSkippedAndTheOthersAreExact()
{
    const std::string bytes = "*4\r\n$1\r\na\r\n" + textOf(ReplyLimits::fMaxValue + 1) +
                              textOf(3 << 20) + "$1\r\nb\r\n+OK\r\n";
    const std::string log = "0/0/0 an array 4\n0/1/0 a text a\n0/1/1 a text too large 1048577\n"
                            "0/1/2 a text too large 3145728\n0/1/3 a text b\n1/0/0 a status OK\n";
    for (const std::size_t size : {bytes.size(), std::size_t{100000}, std::size_t{1}})
        QCOMPARE(readInBlocks(bytes, 2, [size] { return size; }).log, log);
}

void TestReplyLimits::itTakesATextOfTheLargestSize()
{
    ReplyCounter counter;
    ReplyReader reader;
    reader.expect(1, counter);
    const std::string bytes = textOf(ReplyLimits::fMaxValue);
    for (std::size_t at = 0; at < bytes.size(); at += 100000)
        reader.read(std::string_view(bytes).substr(at, 100000));
    QVERIFY(reader.isComplete());
    QCOMPARE(counter.texts, 1);
}

void TestReplyLimits::noServerHoldsATextSoLarge()
{
    QCOMPARE(problemWith("*2\r\n+OK\r\n$536870913\r\n").text,
             std::string("piece 1 is larger than 512 MiB"));
    QCOMPARE(problemWith("$9223372036854775807\r\n").text,
             std::string("piece 0 is larger than 512 MiB"));
    QCOMPARE(problemWith("$536870912\r\nx").text, std::string());
}

void TestReplyLimits::textsBeyondTheLimitAreSkipped_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("kept"); // of 1,000
    QTest::newRow("of the largest size") << static_cast<int>(ReplyLimits::fMaxValue) << 63;
    QTest::newRow("half as large") << 500000 << 134;
}

void TestReplyLimits::textsBeyondTheLimitAreSkipped()
{
    QFETCH(int, size);
    QFETCH(int, kept);
    const std::string piece = textOf(static_cast<std::size_t>(size));
    const std::string_view bytes = piece;
    for (const std::size_t first : {bytes.size(), std::size_t{100}}) {
        ReplyCounter counter;
        ReplyReader reader;
        reader.expect(1, counter);
        reader.read("*1000\r\n");
        for (int i = 0; i < 999; ++i) {
            reader.read(bytes.substr(0, first));
            reader.read(bytes.substr(first));
        }
        reader.read("$1\r\na\r\n"); // which fits
        QVERIFY2(reader.isComplete(), reader.problem().text.c_str());
        QCOMPARE(counter.texts, kept + 1);
        QCOMPARE(counter.skipped, std::int64_t{999 - kept} * size);
    }
}

void TestReplyLimits::itRefusesALargeReply()
{
    const std::string line = "+" + std::string(4093, 'x') + "\r\n";
    ReplyCounter counter;
    ReplyReader reader;
    reader.expect(1, counter);
    reader.read("*100000\r\n");
    while (!reader.hasProblem() && counter.others < 100000)
        reader.read(line);
    QCOMPARE(counter.others, 20479 + 1); // and the array itself
    QCOMPARE(reader.problem().text, std::string("the reply is larger than 80 MiB"));
}

void TestReplyLimits::eachExchangeBeginsItsCountsAnew()
{
    const std::string piece = textOf(ReplyLimits::fMaxValue);
    std::string manyNulls = "*600000\r\n";
    for (int i = 0; i < 600000; ++i)
        manyNulls += "_\r\n";
    ReplyCounter counter;
    ReplyReader reader;
    for (int exchange = 0; exchange < 3; ++exchange) {
        reader.expect(2, counter);
        reader.read("*40\r\n");
        for (int i = 0; i < 40; ++i)
            reader.read(piece);
        reader.read(manyNulls);
        QVERIFY2(reader.isComplete(), reader.problem().text.c_str());
    }
    QCOMPARE(counter.texts, 120);
}

void TestReplyLimits::whatIsSkippedDoesNotMakeAReplyLarge()
{
    ReplyCounter counter;
    ReplyReader reader;
    reader.expect(1, counter);
    reader.read("*100\r\n");
    const std::string piece = textOf(ReplyLimits::fMaxValue + 1);
    for (int i = 0; i < 100; ++i)
        QVERIFY(reader.read(piece).empty());
    QVERIFY(reader.isComplete());
    QCOMPARE(counter.skipped, std::int64_t{100} * ((1 << 20) + 1));
}

void TestReplyLimits::whatIsSkippedHasItsLimit_data()
{
    QTest::addColumn<QByteArray>("beginning");
    QTest::addColumn<QString>("name");
    QTest::newRow("of a reply") << QByteArray("*3\r\n") << "the reply";
    QTest::newRow("of a push") << QByteArray(">3\r\n") << "a push";
    QTest::newRow("of what nobody is told") << QByteArray("|2\r\n") << "the reply";
}

void TestReplyLimits::whatIsSkippedHasItsLimit()
{
    QFETCH(QByteArray, beginning);
    QFETCH(QString, name);
    ReplyCounter counter;
    ReplyReader reader(&counter);
    reader.expect(1, counter);
    reader.read(beginning.toStdString());
    skipTexts(reader, 2, ReplyLimits::fMaxSkipped / 2);
    QVERIFY2(!reader.hasProblem(), reader.problem().text.c_str());
    reader.read("$1048577\r\n");
    QCOMPARE(reader.problem().text,
             name.toStdString() + " has more than 1024 MiB of texts too large to be kept");
}

void TestReplyLimits::eachExchangeSkipsAnew()
{
    ReplyCounter replies;
    ReplyCounter pushes;
    ReplyReader reader(&pushes);
    for (int exchange = 0; exchange < 3; ++exchange) {
        reader.expect(2, replies);
        skipTexts(reader, 2, ReplyLimits::fMaxSkipped / 2);
        QVERIFY2(reader.isComplete(), reader.problem().text.c_str());
        reader.read(">2\r\n");
        skipTexts(reader, 2, ReplyLimits::fMaxSkipped / 2);
        QVERIFY2(!reader.hasProblem(), reader.problem().text.c_str());
    }
    QCOMPARE(replies.skipped, std::int64_t{3} << 30);
    QCOMPARE(pushes.skipped, std::int64_t{3} << 30);
}

void TestReplyLimits::ofALargePushTextsAreSkippedToo()
{
    ReplyCounter answers;
    ReplyCounter pushes;
    ReplyReader reader(&pushes);
    reader.expect(1, answers);
    const std::string piece = textOf(ReplyLimits::fMaxValue);
    for (int push = 0; push < 100; ++push) // each alone is small
        reader.read(">1\r\n" + piece);
    QCOMPARE(pushes.texts, 100);
    reader.read(">100\r\n");
    for (int i = 0; i < 100; ++i)
        reader.read(piece);
    QCOMPARE(pushes.texts, 163);
    reader.read("+OK\r\n");
    QVERIFY2(reader.isComplete(), reader.problem().text.c_str());
}

void TestReplyLimits::itNestsToItsLimit()
{
    const auto nested = [](const char* outer, int depth) {
        std::string bytes;
        for (int i = 0; i < depth; ++i)
            bytes += outer;
        return bytes;
    };
    QCOMPARE(problemWith(nested("*1\r\n", ReplyLimits::fMaxDepth) + "*0\r\n").text, std::string());
    QCOMPARE(problemWith(nested("*1\r\n", ReplyLimits::fMaxDepth + 1)).text,
             std::string("malformed reply: more than 8 arrays inside one another"));
    QCOMPARE(problemWith(nested("|1\r\n", ReplyLimits::fMaxDepth + 1)).text,
             std::string("malformed reply: more than 8 arrays inside one another"));
    QCOMPARE(problemWith(nested("|0\r\n", 1000) + "+OK\r\n").text, std::string());
}

void TestReplyLimits::itCountsTheElementsOfAllLevels()
{
    const std::string problem = "malformed reply: more than 1048576 elements";
    QCOMPARE(problemWith("*1048576\r\n").text, std::string());
    QCOMPARE(problemWith("*1048577\r\n").text, problem);
    QCOMPARE(problemWith("%524288\r\n").text, std::string());
    QCOMPARE(problemWith("%524289\r\n").text, problem);
    QCOMPARE(problemWith("|524289\r\n").text, problem);
    QCOMPARE(problemWith("%9223372036854775807\r\n").text, problem);
    QCOMPARE(problemWith("*1000000\r\n*48576\r\n").text, std::string());
    QCOMPARE(problemWith("*1000000\r\n*48577\r\n").text, problem);
}

REGISTER_TEST(TestReplyLimits, NoApplication)
#include "tst_reply_limits.moc"
