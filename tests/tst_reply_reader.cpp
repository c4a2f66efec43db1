#include "support/guarded_test.h"

#include <reply_reader.h>

#include <zo/error.h>

#include <QtTest>

namespace {

/// Writes down what it is given.
class Recorder : public ReplySink
{
public:
    std::string log;
    bool refusesArrays = false;

    void takeArray(const ReplyPlace& place, int size) override
    {
        if (refusesArrays)
            throw ZoError("no arrays here");
        write(place, "array " + std::to_string(size));
    }
    void takeText(const ReplyPlace& place, std::string_view text) override
    {
        write(place, "text " + std::string(text));
    }
    void takeInteger(const ReplyPlace& place, long long number) override
    {
        write(place, "integer " + std::to_string(number));
    }
    void takeNil(const ReplyPlace& place) override { write(place, "nil"); }
    void takeError(const ReplyPlace& place, std::string_view text) override
    {
        write(place, "error " + std::string(text));
    }
    std::string nameOf(const ReplyPlace& place) const override
    {
        return "piece " + std::to_string(place.index);
    }

private:
    void write(const ReplyPlace& place, const std::string& what)
    {
        log += std::to_string(place.reply) + "/" + std::to_string(place.depth) + "/" +
               std::to_string(place.index) + " " + what + "\n";
    }
};

std::string problemWith(const std::string& bytes, std::size_t blockSize = 4096)
{
    Recorder recorder;
    ReplyReader reader;
    reader.expect(1, recorder);
    try {
        for (std::size_t at = 0; at < bytes.size(); at += blockSize)
            reader.feed(std::string_view(bytes).substr(at, blockSize));
    } catch (const ZoError& error) {
        return error.toString();
    }
    return {};
}

const char allKinds[] = "*4\r\n$3\r\na\r\n\r\n:-7\r\n$-1\r\n*2\r\n$0\r\n\r\n*-1\r\n"
                        "+OK\r\n-ERR no\r\n*0\r\n";
const char allKindsLog[] = "0/0/0 array 4\n0/1/0 text a\r\n\n0/1/1 integer -7\n0/1/2 nil\n"
                           "0/1/3 array 2\n0/2/0 text \n0/2/1 nil\n"
                           "1/0/0 text OK\n2/0/0 error ERR no\n3/0/0 array 0\n";

} // namespace

/// How the bytes of a connection become replies, whatever the bytes.
class TestReplyReader : public GuardedTest
{
    Q_OBJECT

private slots:
    void itReadsEveryKindOfReply();
    void itDoesNotMatterHowTheBytesArrive();
    void itReadsOneExchangeAfterTheOther();
    void itRefusesWhatIsNoReply_data();
    void itRefusesWhatIsNoReply();
    void itRefusesALargeTextAsSoonAsItIsAnnounced();
    void itTakesATextOfTheLargestSize();
    void itRefusesALargeReply();
    void theSinkMayRefuse();
};

void TestReplyReader::itReadsEveryKindOfReply()
{
    Recorder recorder;
    ReplyReader reader;
    reader.expect(4, recorder);
    QVERIFY(!reader.isComplete());
    reader.feed(allKinds);
    QVERIFY(reader.isComplete());
    QCOMPARE(recorder.log, std::string(allKindsLog));
}

void TestReplyReader::itDoesNotMatterHowTheBytesArrive()
{
    const std::string_view bytes(allKinds);
    for (std::size_t first = 1; first < bytes.size(); ++first) {
        Recorder recorder;
        ReplyReader reader;
        reader.expect(4, recorder);
        reader.feed(bytes.substr(0, first));
        QVERIFY(!reader.isComplete());
        for (const char byte : bytes.substr(first))
            reader.feed({&byte, 1});
        QCOMPARE(recorder.log, std::string(allKindsLog));
        QVERIFY(reader.isComplete());
    }
}

void TestReplyReader::itReadsOneExchangeAfterTheOther()
{
    ReplyReader reader;
    for (int i = 0; i < 1000; ++i) {
        Recorder recorder;
        reader.expect(1, recorder);
        reader.feed("+OK\r\n");
        QVERIFY(reader.isComplete());
        QCOMPARE(recorder.log, std::string("0/0/0 text OK\n"));
    }
}

void TestReplyReader::itRefusesWhatIsNoReply_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("another protocol") << QByteArray("HTTP/1.1 400 Bad Request\r\n");
    QTest::newRow("TLS") << QByteArray("\x15\x03\x03\x00\x02\x02\x46", 7);
    QTest::newRow("zero bytes") << QByteArray(100, '\0');
    QTest::newRow("no number for a size") << QByteArray("$x\r\n");
    QTest::newRow("no number for a count") << QByteArray("*x\r\n");
    QTest::newRow("negative size") << QByteArray("$-2\r\n");
    QTest::newRow("negative count") << QByteArray("*-2\r\n");
    QTest::newRow("count too large to be one") << QByteArray("*4294967297\r\n");
    QTest::newRow("size too large to be one") << QByteArray("$99999999999999999999999\r\n");
    QTest::newRow("no integer") << QByteArray(":12a\r\n");
    QTest::newRow("text longer than announced") << QByteArray("$1\r\nabcdef\r\n");
    QTest::newRow("more than was asked for") << QByteArray("+OK\r\n+OK\r\n");
    QTest::newRow("part of more") << QByteArray("+OK\r\n*");
    QTest::newRow("line without end") << QByteArray("+" + QByteArray(100000, 'x'));
    QTest::newRow("size without end") << QByteArray("$" + QByteArray(100, '0'));
    QTest::newRow("count without end") << QByteArray("*" + QByteArray(100000, '1'));
    QTest::newRow("arrays in arrays") << QByteArray("*1\r\n").repeated(20);
}

void TestReplyReader::itRefusesWhatIsNoReply()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(!problemWith(bytes.toStdString()).empty());
    QVERIFY(!problemWith(bytes.toStdString(), 1).empty());
}

void TestReplyReader::itRefusesALargeTextAsSoonAsItIsAnnounced()
{
    QCOMPARE(problemWith("*2\r\n+OK\r\n$2147483648\r\n"),
             std::string("piece 1 is larger than 1 MiB"));
    QCOMPARE(problemWith("$1048577\r\n"), std::string("piece 0 is larger than 1 MiB"));
}

void TestReplyReader::itTakesATextOfTheLargestSize()
{
    const std::string text(ReplyReader::fMaxValue, 'x');
    QCOMPARE(problemWith("$1048576\r\n" + text + "\r\n", 100000), std::string());
}

void TestReplyReader::itRefusesALargeReply()
{
    const std::string piece = "$1048576\r\n" + std::string(ReplyReader::fMaxValue, 'x') + "\r\n";
    Recorder recorder;
    ReplyReader reader;
    reader.expect(1, recorder);
    reader.feed("*100\r\n");
    int taken = 0;
    try {
        for (; taken < 100; ++taken) {
            reader.feed(piece);
            recorder.log.clear();
        }
    } catch (const ZoError& error) {
        QVERIFY(error.toString().find("64 MiB") != std::string::npos);
    }
    QCOMPARE(taken, 63);
}

void TestReplyReader::theSinkMayRefuse()
{
    Recorder recorder;
    recorder.refusesArrays = true;
    ReplyReader reader;
    reader.expect(1, recorder);
    QVERIFY_EXCEPTION_THROWN(reader.feed("*2147483647\r\n"), ZoError);
}

QTEST_APPLESS_MAIN(TestReplyReader)
#include "tst_reply_reader.moc"
