// SPDX-License-Identifier: MIT
#include "support/fake_memory.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <progress.h>
#include <recorder.h>

#include <zo/error.h>

#include <QtTest>

#include <utility>

using namespace std::chrono_literals;

/// How a robot is polled, and what becomes a row.
class TestRecorder : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void eachPeriodHasARow();
    void latePollsDoNotShiftTheNext();
    void aPollThatTookPeriodsMissesThem();
    void aRobotThatIsAwayHasNoRows();
    void aGapIsMarkedOnceWhenWanted();
    void aContinuedRecordingBeginsWithAGap();
    void theSameAnswerIsNoNews();
    void anAnswerUnderWayIsAMissedPoll();
    void aWrongNumberOfValuesIsNoAnswer();
    void aRobotThatRefusesEndsIt();
    void whatFailsBesideAFailureIsTold();
    void aSinkThatFailsIsToldOnce();
    void itEndsWhenItIsTold();
    void progressIsShownOnceASecond();
    void aReaderWhoPausesMissesPolls();
    void rowsAreCountedAndNotAnswers();
    void valuesThatAreTooLargeAreCountedAndTold();
    void keysWithoutAValueAreTold();
    void ofManyKeysWithoutAValueSomeAreNamed();
    void keysWithoutAValueAreNotToldUnlessWanted();
    void keysOfARobotThatNeverAnswersAreNotTold();
    void atTheEndTheReaderIsWaitedFor();
    void atTheEndTheReaderIsNotWaitedForWhenToldToEnd();

private:
    /// A robot that does what the test says at each poll, counted from 0.
    using Script = std::function<ZoListAnswer(int poll)>;

    void record(const Script& script, const RecorderPlan& plan);
    ZoListAnswer answer(int value);
    QStringList times() const;

    std::chrono::milliseconds fNow{0}; ///< since both clocks began
    std::chrono::milliseconds fLateness{0};
    int fWaits = 0;
    int fMostWaits = 0; ///< 0: no limit
    bool fIsRefused = false;
    bool fIsContinued = false;
    bool fIsFinished = false;
    bool fHasChanges = false;
    std::function<bool()> fReader;
    QString fAddError;
    QString fFinishError;
    QStringList fRows;
    QStringList fTold;
    QStringList fProgress;
};

namespace {

/// Whether there is one who reads.
using Reader = std::function<bool()>;

class ListSink : public RowSink
{
public:
    ListSink(QStringList& rows, bool& isFinished, bool isContinued, const Reader& reader)
        : fRows(rows), fIsFinished(isFinished), fIsContinued(isContinued), fReader(reader)
    {
    }
    void add(const std::string& rows, Time) override
    {
        if (!addError.isEmpty())
            throw std::runtime_error(addError.toStdString());
        fRows += QString::fromStdString(rows).split("\r\n", Qt::SkipEmptyParts);
    }
    void finish() override
    {
        fIsFinished = true;
        if (!finishError.isEmpty())
            throw std::runtime_error(finishError.toStdString());
    }
    bool isContinued() const override { return fIsContinued; }
    bool hasRoom() const override { return !fReader || fReader(); }
    bool isTaken() const override { return !fReader || fReader(); }
    std::uint64_t bytes() const override { return 0; }

    QString addError;
    QString finishError;

private:
    QStringList& fRows;
    bool& fIsFinished;
    const bool fIsContinued;
    const Reader fReader;
};

RecorderPlan planOf(std::chrono::milliseconds duration)
{
    RecorderPlan plan;
    plan.keys = {"a"};
    plan.period = 100ms;
    plan.duration = duration;
    return plan;
}

} // namespace

void TestRecorder::init()
{
    fNow = 0ms;
    fLateness = 0ms;
    fWaits = 0;
    fMostWaits = 0;
    fIsRefused = fIsContinued = fIsFinished = fHasChanges = false;
    fReader = nullptr;
    fAddError.clear();
    fFinishError.clear();
    fRows.clear();
    fTold.clear();
    fProgress.clear();
}

ZoListAnswer TestRecorder::answer(int value)
{
    return {ZoValue::fromElements({value}), std::chrono::steady_clock::time_point(fNow), {}};
}

QStringList TestRecorder::times() const
{
    QStringList times;
    for (const QString& row : fRows)
        times += row.section(',', 0, 0);
    return times;
}

void TestRecorder::record(const Script& script, const RecorderPlan& plan)
{
    FakeMemory memory;
    memory.answer = [&](const ZoValue&) {
        const ZoListAnswer given = script(static_cast<int>(memory.calls.size()) - 1);
        const std::chrono::nanoseconds arrived = given.arrived.time_since_epoch();
        return ZoValue::fromElements({given.values, std::int64_t{arrived.count()}, given.tooLarge});
    };
    const auto link = [this] {
        ZoLinkStatus status;
        status.refused = fIsRefused;
        status.cause = "who are you?";
        return status;
    };
    const auto clocks = [this] {
        return ClockReading{std::chrono::steady_clock::time_point(fNow),
                            std::chrono::system_clock::time_point(fNow)};
    };
    const auto wait = [this](RecorderTime::Point then) {
        fNow = std::chrono::duration_cast<std::chrono::milliseconds>(then.time_since_epoch()) +
               fLateness;
        return fMostWaits == 0 || ++fWaits < fMostWaits;
    };
    const Columns columns = columnsOf(plan.keys);
    TableRows table(columns);
    ChangeRows changes(columns);
    Rows& rows = fHasChanges ? static_cast<Rows&>(changes) : table;
    ListSink sink(fRows, fIsFinished, fIsContinued, fReader);
    sink.addError = fAddError;
    sink.finishError = fFinishError;
    ProgressLine progress(
        [this](const std::string& text) { fProgress += QString::fromStdString(text); });
    Recorder recorder({*memory.proxy(), link}, rows, sink, progress,
                      [this](const std::string& text) { fTold += QString::fromStdString(text); },
                      {clocks, wait});
    recorder.run(plan);
}

void TestRecorder::eachPeriodHasARow()
{
    record([this](int poll) { return answer(poll); }, planOf(400ms));
    QCOMPARE(fRows, (QStringList{"0.000,0", "0.100,1", "0.200,2", "0.300,3"}));
    QVERIFY(fTold.isEmpty());
    QVERIFY(fIsFinished);
}

void TestRecorder::latePollsDoNotShiftTheNext()
{
    fLateness = 7ms;
    record(
        [this](int poll) {
            fNow += 20ms;
            return answer(poll);
        },
        planOf(400ms));
    QCOMPARE(times(), (QStringList{"0.020", "0.127", "0.227", "0.327"}));
}

void TestRecorder::aPollThatTookPeriodsMissesThem()
{
    record(
        [this](int poll) {
            fNow += poll == 1 ? 250ms : 0ms;
            return answer(poll);
        },
        planOf(600ms));
    QCOMPARE(times(), (QStringList{"0.000", "0.350", "0.400", "0.500"}));
    QVERIFY2(fProgress.last().contains("4 rows, 2 polls missed"), qPrintable(fProgress.last()));
}

void TestRecorder::aRobotThatIsAwayHasNoRows()
{
    record(
        [this](int poll) -> ZoListAnswer {
            if (poll == 1 || poll == 2)
                throw ZoError("no answer");
            return answer(poll);
        },
        planOf(500ms));
    QCOMPARE(fRows, (QStringList{"0.000,0", "0.300,3", "0.400,4"}));
    QCOMPARE(fTold, (QStringList{"the robot is lost: no answer", "the robot is back"}));
}

void TestRecorder::aGapIsMarkedOnceWhenWanted()
{
    RecorderPlan plan = planOf(500ms);
    plan.gapRows = true;
    record(
        [this](int poll) -> ZoListAnswer {
            if (poll == 1 || poll == 2)
                throw ZoError("no answer");
            return answer(poll);
        },
        plan);
    QCOMPARE(fRows, (QStringList{"0.000,0", "0.100,", "0.300,3", "0.400,4"}));
    QVERIFY2(fProgress.last().contains("3 rows, 2 polls missed"), qPrintable(fProgress.last()));
}

void TestRecorder::aContinuedRecordingBeginsWithAGap()
{
    fIsContinued = true;
    RecorderPlan plan = planOf(200ms);
    plan.gapRows = true;
    record([this](int poll) { return answer(poll); }, plan);
    QCOMPARE(fRows, (QStringList{"0.000,", "0.000,0", "0.100,1"}));
}

void TestRecorder::theSameAnswerIsNoNews()
{
    record(
        [this](int poll) {
            return ZoListAnswer{ZoValue::fromElements({poll}),
                                std::chrono::steady_clock::time_point(poll < 2 ? 0ms : fNow),
                                {}};
        },
        planOf(400ms));
    QCOMPARE(times(), (QStringList{"0.000", "0.200", "0.300"}));
}

void TestRecorder::anAnswerUnderWayIsAMissedPoll()
{
    record(
        [this](int poll) -> ZoListAnswer {
            if (poll == 1)
                throw ZoUnderWay("soon");
            return answer(poll);
        },
        planOf(300ms));
    QCOMPARE(times(), (QStringList{"0.000", "0.200"}));
    QVERIFY(fTold.isEmpty());
}

void TestRecorder::aWrongNumberOfValuesIsNoAnswer()
{
    record(
        [this](int poll) {
            if (poll != 1)
                return answer(poll);
            return ZoListAnswer{
                ZoValue::fromElements({1, 2}), std::chrono::steady_clock::time_point(fNow), {}};
        },
        planOf(300ms));
    QCOMPARE(times(), (QStringList{"0.000", "0.200"}));
    QVERIFY2(fTold[0].contains("2 values for 1 keys"), qPrintable(fTold[0]));
}

void TestRecorder::aRobotThatRefusesEndsIt()
{
    try {
        record(
            [this](int poll) -> ZoListAnswer {
                fIsRefused = poll == 2;
                if (poll > 0)
                    throw ZoError("connection lost");
                return answer(poll);
            },
            planOf(0ms));
        QFAIL("it went on");
    } catch (const ZoError& error) {
        QCOMPARE(error.toString(), std::string("who are you?"));
    }
    QCOMPARE(fRows.size(), 1);
    QVERIFY(fIsFinished);
    QVERIFY2(fProgress.last().endsWith('\n'), qPrintable(fProgress.last()));
}

void TestRecorder::whatFailsBesideAFailureIsTold()
{
    fFinishError = "the disk fails";
    const RecorderPlan plan = planOf(100ms);
    const auto refuse = [this](int) -> ZoListAnswer {
        fIsRefused = true;
        throw ZoError("connection lost");
    };
    QVERIFY_EXCEPTION_THROWN(record(refuse, plan), ZoError);
    QCOMPARE(fTold, QStringList{"the disk fails"});
    fIsRefused = false;
    QVERIFY_EXCEPTION_THROWN(record([this](int poll) { return answer(poll); }, plan),
                             std::runtime_error);
    QCOMPARE(fTold.size(), 1);
    QVERIFY2(fProgress.last().endsWith('\n'), qPrintable(fProgress.last()));
}

void TestRecorder::aSinkThatFailsIsToldOnce()
{
    fAddError = "the disk is full";
    fFinishError = "the file has another size";
    QString failure;
    try {
        record([this](int poll) { return answer(poll); }, planOf(0ms));
    } catch (const std::runtime_error& error) {
        failure = error.what();
    }
    QCOMPARE(failure, fAddError);
    QVERIFY(fIsFinished);
    QVERIFY2(fTold.isEmpty(), qPrintable(fTold.join('|')));
}

void TestRecorder::itEndsWhenItIsTold()
{
    fMostWaits = 3;
    record([this](int poll) { return answer(poll); }, planOf(0ms));
    QCOMPARE(fRows.size(), 3);
    QVERIFY(fIsFinished);
}

void TestRecorder::progressIsShownOnceASecond()
{
    RecorderPlan plan = planOf(7500ms);
    plan.period = 2500ms;
    record([this](int poll) { return answer(poll); }, plan);
    QStringList ages;
    for (const QString& line : std::as_const(fProgress))
        ages += line.section(", ", 2, 2);
    QCOMPARE(ages, (QStringList{"age 0 ms", "age 1000 ms", "age 2000 ms", "age 1000 ms",
                                "age 2000 ms", "age 0 ms"}));
}

void TestRecorder::aReaderWhoPausesMissesPolls()
{
    fReader = [this] { return fNow < 100ms || fNow >= 300ms; };
    record([this](int poll) { return answer(poll); }, planOf(500ms));
    QCOMPARE(fRows, (QStringList{"0.000,0", "0.300,1", "0.400,2"}));
    QCOMPARE(fTold.size(), 1);
    QVERIFY2(fTold[0].contains("pauses: polls are missed"), qPrintable(fTold[0]));
    QVERIFY2(fProgress.last().contains("3 rows, 2 polls missed"), qPrintable(fProgress.last()));
}

void TestRecorder::rowsAreCountedAndNotAnswers()
{
    fHasChanges = true;
    RecorderPlan plan = planOf(500ms);
    plan.keys = {"a", "b"};
    record(
        [this](int poll) {
            return ZoListAnswer{ZoValue::fromElements({poll == 2 ? 7 : 1, 2}),
                                std::chrono::steady_clock::time_point(fNow),
                                {}};
        },
        plan);
    QCOMPARE(fRows.size(), 4); // both, none, one, that again, none
    QVERIFY2(fProgress.last().contains("4 rows, 0 polls missed"), qPrintable(fProgress.last()));
}

void TestRecorder::valuesThatAreTooLargeAreCountedAndTold()
{
    record(
        [this](int poll) {
            ZoListAnswer given = answer(poll);
            given.tooLarge = poll == 1 || poll == 2 ? 1 : poll == 4 ? 2 : 0;
            return given;
        },
        planOf(600ms));
    QCOMPARE(fTold, (QStringList{"1 value is larger than 1 MiB: rows leave that out",
                                 "2 values are larger than 1 MiB: rows leave that out"}));
    QVERIFY2(fProgress.last().contains(", 4 values too large, "), qPrintable(fProgress.last()));
}

void TestRecorder::keysWithoutAValueAreTold()
{
    RecorderPlan plan = planOf(300ms);
    plan.keys = {"there", "slip", "late"};
    record(
        [this](int poll) {
            ZoListAnswer given = answer(poll);
            given.values = ZoValue::fromElements({1, ZoValue(), poll > 1 ? ZoValue(7) : ZoValue()});
            return given;
        },
        plan);
    QCOMPARE(fTold,
             (QStringList{"there is no value of 'slip', 'late' now (is that spelled right?): what "
                          "is recorded of it stays empty until there is one",
                          "there was never a value to record of 'slip'"}));
}

void TestRecorder::ofManyKeysWithoutAValueSomeAreNamed()
{
    RecorderPlan plan = planOf(100ms);
    plan.keys = {"a", "b", "c", "d", "e", "f", "g"};
    record(
        [this](int poll) {
            ZoListAnswer given = answer(poll);
            given.values = ZoValue::fromElements(std::vector<ZoValue>(7));
            return given;
        },
        plan);
    QVERIFY2(fTold.first().contains("of 'a', 'b', 'c', 'd', 'e' and 2 more now"),
             qPrintable(fTold.first()));
    QCOMPARE(fTold.last(),
             QString("there was never a value to record of 'a', 'b', 'c', 'd', 'e' and 2 more"));
}

void TestRecorder::keysWithoutAValueAreNotToldUnlessWanted()
{
    RecorderPlan plan = planOf(200ms);
    plan.tellsMissing = false;
    record(
        [this](int poll) {
            ZoListAnswer given = answer(poll);
            given.values = ZoValue::fromElements({ZoValue()});
            return given;
        },
        plan);
    QVERIFY(fTold.isEmpty());
}

void TestRecorder::keysOfARobotThatNeverAnswersAreNotTold()
{
    record([](int) -> ZoListAnswer { throw ZoError("no answer"); }, planOf(200ms));
    QCOMPARE(fTold, QStringList("the robot is lost: no answer"));
}

void TestRecorder::atTheEndTheReaderIsWaitedFor()
{
    fReader = [this] { return fNow < 200ms || fNow >= 5s; };
    fLateness = 150ms;
    record([this](int poll) { return answer(poll); }, planOf(200ms));
    QCOMPARE(fRows.size(), 1);
    QVERIFY(fNow >= 5s);
    QVERIFY(fIsFinished);
}

void TestRecorder::atTheEndTheReaderIsNotWaitedForWhenToldToEnd()
{
    fReader = [this] { return fNow < 50ms; };
    fMostWaits = 3;
    record([this](int poll) { return answer(poll); }, planOf(200ms));
    QCOMPARE(fWaits, 3);
    QVERIFY(fIsFinished);
}

REGISTER_TEST(TestRecorder, NoApplication)
#include "tst_recorder.moc"
