// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"
#include "support/sampled_graph.h"

#include "graph_clock.h"

#include <QtTest>

#include <algorithm>
#include <cmath>

namespace {

constexpr qint64 day = Q_INT64_C(24) * 3600 * 1000; ///< ms

/// A model with the one key "a".
class MovingKey
{
public:
    MovingKey() { model->addSTMVal("key", "a"); }

    void set(double value) const { model->refreshSTMVal("key", ZoValue(value)); }

    boost::shared_ptr<Model> model = boost::make_shared<Model>();
};

/// A graph of the key "a" on the clock `time`, ms. It samples when it is told.
class TimedGraph : public Graph
{
public:
    TimedGraph(const boost::shared_ptr<const Model>& model, const qint64& time)
        : Graph(model, nullptr)
    {
        init();
        fTimer->setInterval(static_cast<int>(day));
        *fClock = GraphClock([&time] { return time; });
        resize(400, 200);
        fAutoscale = false;
        fMinY = -10;
        fMaxY = 10;
        addSTMValue("a", nullptr);
    }

    const QList<TimeValue>& samples() { return fSeries["a"].second; }

    /// The columns right of the labels, and of what the last pruning may have cut at the left edge.
    QImage curve() { return grab().toImage().copy(100, 0, 300, 200); }
};

/// Some ups and downs in a picture's width.
double wave(qint64 time)
{
    return 8 * std::sin(static_cast<double>(time) / 130.0);
}

/// Lets `time` go on by `steps` sampling periods, with a sample of each graph at the end of each.
void run(qint64& time, const MovingKey& key, const QList<TimedGraph*>& graphs, int steps)
{
    for (int i = 0; i < steps; ++i) {
        time += Graph::fInterval;
        key.set(wave(time));
        for (TimedGraph* graph : graphs)
            graph->xUpdateTime();
    }
}

} // namespace

/// What a graph shows as time goes by: seconds, and weeks.
class TestGraphTime : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void curvesMoveLeftBySpeedTimesSeconds_data();
    void curvesMoveLeftBySpeedTimesSeconds();
    void samplesBearTheirTimeInSinglePrecision();
    void eachSampleReadsTheClockAgain();
    void thePictureStaysAsItIsWhenTheClockIsSetBack();
    void graphsOfAnyAgeShowTheSame_data();
    void graphsOfAnyAgeShowTheSame();
    void noSampleIsLostWhenTheClockIsSetBack();
    void samplesOfAHundredDaysStayExactAndInOrderAtSpeedZero();
    void aGraphPausedForDaysStartsAgainFromNothing();
    void aGraphWithoutModelIsPaintedRightForDays();
    void calledAgainInitKeepsTheClockThatWasSetBack();
    void aStepBeforeInitIsTakenAtZero();

private:
    qint64 fTime = 0;
    MovingKey fKey;
};

void TestGraphTime::init()
{
    fTime = 0;
}

void TestGraphTime::curvesMoveLeftBySpeedTimesSeconds_data()
{
    QTest::addColumn<double>("speed");
    QTest::addColumn<qint64>("milliseconds");
    QTest::addColumn<int>("pixels");
    QTest::newRow("default speed") << 100.0 << Q_INT64_C(500) << 50;
    QTest::newRow("slow") << 25.0 << Q_INT64_C(1000) << 25;
    QTest::newRow("fast") << 200.0 << Q_INT64_C(500) << 100;
    QTest::newRow("less than a pixel") << 100.0 << Q_INT64_C(2) << 0;
    QTest::newRow("still") << 0.0 << Q_INT64_C(500) << 0;
}

void TestGraphTime::curvesMoveLeftBySpeedTimesSeconds()
{
    QFETCH(double, speed);
    QFETCH(qint64, milliseconds);
    QFETCH(int, pixels);
    TimedGraph graph(fKey.model, fTime);
    graph.fSpeed = speed;
    graph.show();
    QVERIFY(QTest::qWaitForWindowExposed(&graph, patience));
    run(fTime, fKey, {&graph}, 100);
    fTime += 3; // between two columns, where the last bit of a time decides nothing
    const QImage before = graph.curve();
    fTime += milliseconds;
    const QImage after = graph.curve();
    QCOMPARE(after.copy(0, 0, 300 - pixels, 200), before.copy(pixels, 0, 300 - pixels, 200));
    QCOMPARE(after == before, pixels == 0);
}

void TestGraphTime::samplesBearTheirTimeInSinglePrecision()
{
    TimedGraph graph(fKey.model, fTime);
    fKey.set(1);
    fTime += 100;
    graph.xUpdateTime();
    fTime += 650000;
    graph.xUpdateTime();
    QCOMPARE(timesOf(graph.samples()), (QList<double>{0.1F, 650.1F}));
}

void TestGraphTime::eachSampleReadsTheClockAgain()
{
    fKey.model->addSTMVal("other", "b");
    fKey.model->refreshSTMVal("other", ZoValue(2));
    fKey.set(1);
    TimedGraph graph(fKey.model, fTime);
    graph.addSTMValue("b", nullptr);
    *graph.fClock = GraphClock([this] { return fTime += 1000; });
    graph.xUpdateTime();
    const double first = graph.fSeries["a"].second.first().first;
    QCOMPARE(graph.fSeries["b"].second.first().first, first + 1);
}

void TestGraphTime::thePictureStaysAsItIsWhenTheClockIsSetBack()
{
    TimedGraph graph(fKey.model, fTime);
    graph.show();
    QVERIFY(QTest::qWaitForWindowExposed(&graph, patience));
    fTime = GraphClock::fLimit - 4 - 100 * Graph::fInterval;
    run(fTime, fKey, {&graph}, 100);
    // 3 ms and 4 ms after the last sample are less than a pixel.
    fTime = GraphClock::fLimit - 1;
    const QImage before = graph.grab().toImage();
    QCOMPARE(graph.fClock->elapsed(), GraphClock::fLimit - 1);
    fTime = GraphClock::fLimit;
    const QImage after = graph.grab().toImage();
    QCOMPARE(graph.fClock->elapsed(), GraphClock::fLimit - GraphClock::fTurn);
    QCOMPARE(after, before);
    graph.xCleanup();
    QVERIFY2(graph.grab().toImage() != after, "there was a curve");
}

void TestGraphTime::graphsOfAnyAgeShowTheSame_data()
{
    QTest::addColumn<qint64>("age");
    QTest::addColumn<double>("speed");
    QTest::newRow("set back meanwhile") << GraphClock::fLimit - 5000 << 100.0;
    QTest::newRow("set back meanwhile, top speed") << GraphClock::fLimit - 5000 << 1000.0;
    QTest::newRow("set back meanwhile, slow") << GraphClock::fLimit - 5000 << 0.5;
    QTest::newRow("a week") << 7 * day << 1000.0;
    QTest::newRow("a hundred days") << 100 * day << 1000.0;
    QTest::newRow("a hundred days, slow") << 100 * day << 3.7;
    QTest::newRow("a hundred days, still") << 100 * day << 0.0;
}

void TestGraphTime::graphsOfAnyAgeShowTheSame()
{
    QFETCH(qint64, age);
    QFETCH(double, speed);
    TimedGraph old(fKey.model, fTime);
    fTime = age - 700 * 1000; // whole seconds apart, so that both clocks are rounded alike
    TimedGraph young(fKey.model, fTime);
    fTime = age;
    old.fSpeed = young.fSpeed = speed;
    for (int picture = 0; picture < 40; ++picture) {
        run(fTime, fKey, {&old, &young}, 7);
        fTime += 11; // a paint between two steps
        QCOMPARE(old.curve(), young.curve());
    }
    QVERIFY(old.fClock->elapsed() < GraphClock::fLimit);
    QVERIFY2(fTime - old.fClock->elapsed() > 0, "the old one was set back");
    QCOMPARE(young.fClock->elapsed(), fTime - age + 700 * 1000);
}

void TestGraphTime::noSampleIsLostWhenTheClockIsSetBack()
{
    TimedGraph graph(fKey.model, fTime);
    fTime = GraphClock::fLimit - 20 * 1000;
    run(fTime, fKey, {&graph}, 200);
    const int visible = 400 * 10 / Graph::fInterval; // in 400 px at 100 px/s
    for (int i = 0; i < 600; ++i) {
        run(fTime, fKey, {&graph}, 1);
        QVERIFY(graph.samples().size() >= visible);
        QVERIFY(graph.samples().size() <= visible + 11);
        const QList<double> times = timesOf(graph.samples());
        for (int k = 1; k < times.size(); ++k)
            QVERIFY(std::abs(times.at(k) - times.at(k - 1) - 0.04) < 0.0001);
        QVERIFY2(static_cast<double>(static_cast<float>(times.first())) == times.first(),
                 "a time set back is in single precision still");
    }
    QVERIFY(graph.fClock->elapsed() < fTime);
}

void TestGraphTime::samplesOfAHundredDaysStayExactAndInOrderAtSpeedZero()
{
    TimedGraph graph(fKey.model, fTime);
    graph.fSpeed = 0;
    fKey.set(1);
    const auto setBackBy = [&] {
        return static_cast<double>(fTime - graph.fClock->elapsed()) / 1000;
    };
    QList<double> taken; // times as if the clock had never been set back
    for (fTime = 40; fTime < 100 * day; fTime += 1999123) {
        graph.xUpdateTime();
        taken.append(graph.samples().last().first + setBackBy());
    }
    QCOMPARE(graph.samples().size(), taken.size());
    QVERIFY(taken.size() > 4000);
    for (int i = 0; i < taken.size(); ++i)
        QVERIFY(graph.samples().at(i).first == taken.at(i) - setBackBy());
    const QList<double> times = timesOf(graph.samples());
    QVERIFY(std::is_sorted(times.cbegin(), times.cend()));
    QVERIFY(times.first() < -86400 * 99.0);
    QVERIFY(times.last() < 1000);
}

void TestGraphTime::aGraphPausedForDaysStartsAgainFromNothing()
{
    TimedGraph paused(fKey.model, fTime);
    run(fTime, fKey, {&paused}, 100);
    paused.setPlay(false);
    const QImage nothing = paused.grab().toImage();
    fTime += 40 * day;
    TimedGraph other(fKey.model, fTime);
    fTime += 700 * 1000 + 17;
    QCOMPARE(paused.grab().toImage(), nothing);
    paused.setPlay(true);
    for (int i = 0; i < 20; ++i) {
        run(fTime, fKey, {&paused, &other}, 7);
        QCOMPARE(paused.curve(), other.curve());
    }
    QVERIFY(paused.grab().toImage() != nothing);
    QVERIFY(paused.fClock->elapsed() < GraphClock::fLimit);
}

void TestGraphTime::aGraphWithoutModelIsPaintedRightForDays()
{
    MovingKey key;
    TimedGraph graph(key.model, fTime);
    graph.fSpeed = 0.001;
    for (int i = 0; i < 100; ++i) {
        fTime += 4000 * 1000;
        key.set(wave(i * Graph::fInterval));
        graph.xUpdateTime();
    }
    fTime += 300 * 1000; // between two columns
    key.model.reset();
    const QImage before = graph.curve();
    for (int pixels = 20; pixels <= 260; pixels += 20) {
        fTime += 20 * 1000 * 1000;
        graph.xUpdateTime();
        QCOMPARE(graph.curve().copy(0, 0, 300 - pixels, 200),
                 before.copy(pixels, 0, 300 - pixels, 200));
        QVERIFY(graph.fClock->elapsed() < GraphClock::fLimit);
    }
    QCOMPARE(graph.samples().size(), 100);
}

void TestGraphTime::calledAgainInitKeepsTheClockThatWasSetBack()
{
    TimedGraph graph(fKey.model, fTime);
    fTime = GraphClock::fLimit - 1000;
    run(fTime, fKey, {&graph}, 50);
    const qint64 reading = graph.fClock->elapsed();
    QVERIFY(reading < fTime);
    graph.init();
    QCOMPARE(graph.fClock->elapsed(), reading);
    run(fTime, fKey, {&graph}, 50);
    const QList<double> times = timesOf(graph.samples());
    QCOMPARE(times.size(), 100);
    QVERIFY(std::abs(times.last() - times.first() - 99 * 0.04) < 0.0002);
}

void TestGraphTime::aStepBeforeInitIsTakenAtZero()
{
    fKey.set(1);
    Graph graph(fKey.model, nullptr);
    graph.resize(400, 200);
    graph.addSTMValue("a", nullptr);
    graph.xUpdateTime();
    QCOMPARE(timesOf(graph.fSeries["a"].second), QList<double>{0});
}

REGISTER_TEST(TestGraphTime, QApplication)
#include "tst_graph_time.moc"
