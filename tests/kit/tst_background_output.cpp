// SPDX-License-Identifier: MIT
#include "support/full_pipe.h"
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"

#include <kit/background_output.h>
#include <kit/output.h>

#include <QtTest>

#include <csignal>
#include <sys/ioctl.h>

using kit::BackgroundOutput;

/// Output whose reader may pause.
class TestBackgroundOutput : public GuardedTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void textIsWrittenInOrder();
    void aReaderThatPausesHoldsUpNobody();
    void whatIsOfferedIsLeftOutWhileMuchIsWaiting();
    void aReaderThatIsGoneIsTold();
    void nothingWaitsForAReaderThatIsGone();
};

void TestBackgroundOutput::initTestCase()
{
    GuardedTest::initTestCase();
    std::signal(SIGPIPE, SIG_IGN);
}

void TestBackgroundOutput::textIsWrittenInOrder()
{
    const FullPipe pipe;
    pipe.drain();
    BackgroundOutput output(pipe.writeEnd());
    output.add("a");
    output.offer("b");
    output.add("c");
    output.finish();
    QCOMPARE(output.waiting(), std::size_t(0));
    QCOMPARE(pipe.read(3), QByteArray("abc"));
}

void TestBackgroundOutput::aReaderThatPausesHoldsUpNobody()
{
    const FullPipe pipe;
    BackgroundOutput output(pipe.writeEnd());
    output.add("first,");
    output.add("second");
    QCOMPARE(output.waiting(), std::size_t(12));
    output.finish(); // gives up
    QCOMPARE(output.waiting(), std::size_t(12));
    pipe.drain();
    TRY_VERIFY(output.waiting() == 0);
    QCOMPARE(pipe.read(12), QByteArray("first,second"));
}

void TestBackgroundOutput::whatIsOfferedIsLeftOutWhileMuchIsWaiting()
{
    const FullPipe pipe;
    BackgroundOutput output(pipe.writeEnd());
    output.offer("a", 1);
    output.offer("b", 1);
    QCOMPARE(output.waiting(), std::size_t(1));
    output.offer(std::string(BackgroundOutput::fMuch - 1, 'a'));
    output.offer("b");
    QCOMPARE(output.waiting(), BackgroundOutput::fMuch);
    output.add("c");
    QCOMPARE(output.waiting(), BackgroundOutput::fMuch + 1);
    pipe.drain();
    TRY_VERIFY(output.waiting() == 0);
}

void TestBackgroundOutput::aReaderThatIsGoneIsTold()
{
    int ends[2] = {-1, -1};
    QCOMPARE(::pipe(ends), 0);
    ::close(ends[0]);
    BackgroundOutput output(ends[1]);
    output.add("a");
    QVERIFY_EXCEPTION_THROWN(output.finish(), kit::OutputClosed);
    QVERIFY_EXCEPTION_THROWN(output.add("b"), kit::OutputClosed);
    output.offer("c"); // nobody minds
    ::close(ends[1]);
}

void TestBackgroundOutput::nothingWaitsForAReaderThatIsGone()
{
    int ends[2] = {-1, -1};
    QCOMPARE(::pipe(ends), 0);
    BackgroundOutput output(ends[1]);
    output.add(std::string(1000000, 'a')); // more than a pipe takes
    int written = 0;
    TRY_VERIFY(::ioctl(ends[0], FIONREAD, &written) == 0 && written > 0);
    output.add("b");
    ::close(ends[0]);
    TRY_VERIFY(output.waiting() == 0);
    QVERIFY_EXCEPTION_THROWN(output.finish(), kit::OutputClosed);
    ::close(ends[1]);
}

REGISTER_TEST(TestBackgroundOutput, NoApplication)
#include "tst_background_output.moc"
