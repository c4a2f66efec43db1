// SPDX-License-Identifier: MIT
#include "support/counted_memory.h"
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "support/reply_counter.h"

#include <wire/limits.h>
#include <wire/reply_reader.h>

#include <QtTest>

/// What reading replies asks of the memory.
using namespace zo;

class TestReplyMemory : public GuardedTest
{
    Q_OBJECT

private slots:
    void nothingIsAllocatedBecauseItWasAnnounced();
    void whatArrivesWholeIsNotCopied();
    void aTextThatDripsInGrowsInFewSteps();
};

void TestReplyMemory::nothingIsAllocatedBecauseItWasAnnounced()
{
    const std::size_t before = allocationsSoFar().bytes;
    {
        ReplyCounter counter;
        ReplyReader reader;
        reader.expect(1, counter);
        reader.read("*1048576\r\n");
        reader.read("$1048576\r\nx");
        QVERIFY(!reader.hasProblem());
    }
    {
        const std::string block(100000, 'x');
        ReplyCounter counter;
        ReplyReader reader;
        reader.expect(1, counter);
        reader.read("$500000000\r\n");
        for (int i = 0; i < 5000; ++i)
            reader.read(block);
        reader.read("\r\n");
        QVERIFY(reader.isComplete());
    }
    const std::size_t taken = allocationsSoFar().bytes - before;
    QVERIFY2(taken < 110000, std::to_string(taken).c_str());
}

void TestReplyMemory::whatArrivesWholeIsNotCopied()
{
    std::string bytes = "*10000\r\n";
    for (int i = 0; i < 10000; ++i)
        bytes += textOf(1000 + i % 7);
    ReplyCounter counter;
    ReplyReader reader;
    reader.expect(1, counter);
    const std::size_t taken = allocationsOf([&] { reader.read(bytes); });
    QVERIFY(reader.isComplete());
    QCOMPARE(counter.texts, 10000);
    QCOMPARE(taken, std::size_t{0});
}

void TestReplyMemory::aTextThatDripsInGrowsInFewSteps()
{
    const std::string bytes = textOf(ReplyLimits::fMaxValue);
    ReplyCounter counter;
    ReplyReader reader;
    const std::size_t before = allocationsSoFar().pieces;
    for (int round = 0; round < 2; ++round) {
        reader.expect(1, counter);
        for (const char byte : bytes)
            reader.read({&byte, 1});
        QVERIFY(reader.isComplete());
    }
    const std::size_t taken = allocationsSoFar().pieces - before;
    QVERIFY2(taken < 30, std::to_string(taken).c_str());
}

REGISTER_TEST(TestReplyMemory, NoApplication)
#include "tst_reply_memory.moc"
