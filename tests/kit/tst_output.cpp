// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"
#include "support/watched_thread.h"

#include <kit/output.h>

#include <QFile>
#include <QTemporaryFile>
#include <QtTest>

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

using namespace std::chrono_literals;
using kit::Output;
using kit::OutputClosed;
using kit::OutputError;

/// How programs write what they print.
class TestOutput : public GuardedTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void textIsWrittenOnce();
    void muchTextIsWrittenBeforeItsEnd();
    void aFullPipeIsWaitedFor_data();
    void aFullPipeIsWaitedFor();
    void aFullPipeWhoseReaderGoesIsClosed();
    void aFullPipeDoesNotEndAWait();
    void anEarlyWaitIsNotCutShort();
    void aClosedOutputEndsTheWait();
};

namespace {

class Pipe
{
public:
    explicit Pipe(int flags = 0)
    {
        if (::pipe2(fEnds, O_CLOEXEC) != 0 || ::fcntl(writeEnd(), F_SETFL, flags) != 0)
            throw std::runtime_error("no pipe");
    }
    ~Pipe()
    {
        closeReadEnd();
        ::close(writeEnd());
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    int writeEnd() const { return fEnds[1]; }

    /// What is there, at least a byte of it; empty when nothing comes.
    QByteArray read() const
    {
        char block[4096];
        pollfd input{fEnds[0], POLLIN, 0};
        const bool isThere = ::poll(&input, 1, patience) > 0;
        const ssize_t size = isThere ? ::read(fEnds[0], block, sizeof block) : 0;
        return QByteArray(block, static_cast<int>(qMax<ssize_t>(size, 0)));
    }

    void closeReadEnd()
    {
        if (fEnds[0] >= 0)
            ::close(fEnds[0]);
        fEnds[0] = -1;
    }

private:
    int fEnds[2] = {-1, -1};
};

/// A thread that writes `text` to a pipe; the pipe's reader is gone when this is.
class Writer
{
public:
    Writer(Pipe& pipe, const QByteArray& text)
        : fPipe(pipe), fThread([this, text] {
              Output output(fPipe.writeEnd());
              output.add(text.toStdString());
              output.flush();
          })
    {
    }
    ~Writer() { fPipe.closeReadEnd(); } // ends the thread, should it still write
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    bool waits() const { return fThread.waits(); }
    void join() { fThread.join(); }

private:
    Pipe& fPipe;
    WatchedThread fThread;
};

QByteArray numberedLines(int count)
{
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += "line " + QByteArray::number(i) + "\n";
    return text;
}

/// Fills the pipe behind a non-blocking descriptor to the last byte.
int fill(int descriptor)
{
    int size = 0;
    while (::write(descriptor, "x", 1) == 1)
        ++size;
    return size;
}

} // namespace

void TestOutput::initTestCase()
{
    GuardedTest::initTestCase();
    std::signal(SIGPIPE, SIG_IGN);
}

void TestOutput::textIsWrittenOnce()
{
    const Pipe pipe;
    Output output(pipe.writeEnd());
    output.add("a\n");
    output.add("b\n");
    output.flush();
    QCOMPARE(pipe.read(), QByteArray("a\nb\n"));
    output.add("c\n");
    output.flush();
    QCOMPARE(pipe.read(), QByteArray("c\n"));
}

void TestOutput::muchTextIsWrittenBeforeItsEnd()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    Output output(file.handle());
    constexpr int size = 4000000;
    constexpr int piece = 1000;
    qint64 longest = 0;
    for (int added = piece; added <= size; added += piece) {
        output.add(std::string(piece, 'x'));
        longest = qMax(longest, added - QFile(file.fileName()).size());
    }
    QVERIFY2(longest < 100000, qPrintable(QString::number(longest)));
    output.flush();
    QCOMPARE(QFile(file.fileName()).size(), qint64(size));
}

void TestOutput::aFullPipeIsWaitedFor_data()
{
    QTest::addColumn<int>("flags");
    QTest::newRow("that blocks") << 0;
    QTest::newRow("that does not block") << O_NONBLOCK;
}

void TestOutput::aFullPipeIsWaitedFor()
{
    QFETCH(int, flags);
    Pipe pipe(flags);
    const QByteArray text = numberedLines(30000); // five times what a pipe holds
    Writer writer(pipe, text);
    // Now it is full, and the writer does not try on and on.
    QVERIFY(writer.waits());
    QByteArray read;
    while (read.size() < text.size()) {
        const QByteArray more = pipe.read();
        QVERIFY(!more.isEmpty());
        read += more;
    }
    writer.join();
    QVERIFY(read == text);
}

void TestOutput::aFullPipeWhoseReaderGoesIsClosed()
{
    Pipe pipe(O_NONBLOCK);
    Writer writer(pipe, numberedLines(30000));
    QVERIFY(writer.waits());
    pipe.closeReadEnd();
    QVERIFY_EXCEPTION_THROWN(writer.join(), OutputClosed);
}

void TestOutput::aFullPipeDoesNotEndAWait()
{
    const Pipe pipe(O_NONBLOCK);
    const auto then = std::chrono::steady_clock::now() + 10ms;
    Output(pipe.writeEnd()).waitUntil(then);
    QVERIFY(fill(pipe.writeEnd()) > 0);
    Output(pipe.writeEnd()).waitUntil(then + 10ms);
    QVERIFY(std::chrono::steady_clock::now() >= then + 10ms);
}

void TestOutput::anEarlyWaitIsNotCutShort()
{
    QTemporaryFile file;
    file.open();
    const auto then = std::chrono::steady_clock::now() + 30ms;
    Output(file.handle()).waitUntil(then);
    QVERIFY(std::chrono::steady_clock::now() >= then);
    Output(file.handle()).waitUntil(then - 1s);
}

void TestOutput::aClosedOutputEndsTheWait()
{
    int ends[2] = {-1, -1};
    QCOMPARE(::pipe(ends), 0);
    ::close(ends[0]);
    Output output(ends[1]);
    const auto farAway = std::chrono::steady_clock::now() + 1h;
    QVERIFY_EXCEPTION_THROWN(output.waitUntil(farAway), OutputClosed);
    output.add("text");
    QVERIFY_EXCEPTION_THROWN(output.flush(), OutputClosed);
    ::close(ends[1]);
    QVERIFY_EXCEPTION_THROWN(output.flush(), OutputError);
}

REGISTER_TEST(TestOutput, QCoreApplication)
#include "tst_output.moc"
