// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "support/sampled_graph.h"

#include <QtTest>

namespace {

/// A graph of 800 pixels at 0 s with the given curves.
class CurvesAtZero : public Graph
{
public:
    explicit CurvesAtZero(const QStringList& aliases) : CurvesAtZero(modelWith(aliases), aliases) {}

    QList<TimeValue>& samples(const QString& alias = "a") { return samplesOf(*this, alias); }

    /// One step; tells whether it has pruned.
    bool stepPrunes()
    {
        samples() = {{-1000, 0}};
        xUpdateTime();
        return timesOf(samples()) == QList<double>{0};
    }

    /// Steps until one has pruned. Tells whether that took ten steps at most.
    bool stepUntilOnePrunes()
    {
        for (int i = 0; i < 10; ++i) {
            if (stepPrunes())
                return true;
        }
        return false;
    }

private:
    CurvesAtZero(boost::shared_ptr<Model> model, const QStringList& aliases)
        : Graph(model, nullptr), fKept(std::move(model))
    {
        resize(800, 400);
        for (const QString& alias : aliases)
            addSTMValue(alias, nullptr);
    }

    boost::shared_ptr<Model> fKept;
};

} // namespace

/// What a graph forgets, and when.
class TestGraphPruning : public GuardedTest
{
    Q_OBJECT

private slots:
    void everyTenthStepOfTheProcessPrunes();
    void stepsWithoutModelDoNotCount();
    void aStepPrunesBeforeItSamples();
    void everyCurveIsPruned();
    void samplesBeyondTheSpanAreForgotten();
    void aWiderGraphRemembersMore();
    void speedZeroForgetsOnlyUnorderedSamples();
    void sizeZeroAndSpeedZeroAreHarmless();
};

void TestGraphPruning::everyTenthStepOfTheProcessPrunes()
{
    CurvesAtZero one({"a"});
    CurvesAtZero two({"a"});
    CurvesAtZero bare({});
    QVERIFY(one.stepUntilOnePrunes());
    for (int step = 1; step <= 200; ++step) {
        if (step % 4 == 1)
            bare.xUpdateTime(); // never at a multiple of ten
        else
            QCOMPARE((step % 3 == 0 ? one : two).stepPrunes(), step % 10 == 0);
    }
}

void TestGraphPruning::stepsWithoutModelDoNotCount()
{
    CurvesAtZero graph({"a"});
    Graph gone({}, nullptr);
    QVERIFY(graph.stepUntilOnePrunes());
    for (int step = 1; step <= 30; ++step) {
        gone.xUpdateTime();
        QCOMPARE(graph.stepPrunes(), step % 10 == 0);
    }
}

void TestGraphPruning::aStepPrunesBeforeItSamples()
{
    CurvesAtZero graph({"a"});
    QVERIFY(graph.stepUntilOnePrunes());
    for (int step = 1; step <= 9; ++step)
        graph.xUpdateTime();
    graph.samples() = {{-1000, 0}, {-2, 0}, {5, 0}};
    graph.xUpdateTime();
    QVERIFY2(timesOf(graph.samples()) == (QList<double>{-2, 5, 0}),
             "5 is later than the new sample, but was the last one");
    stepUntilPruned(graph);
    QCOMPARE(timesOf(graph.samples()).mid(0, 3), (QList<double>{-2, 0, 0}));
}

void TestGraphPruning::everyCurveIsPruned()
{
    CurvesAtZero graph({"a", "b", "c"});
    for (const char* alias : {"a", "b", "c"})
        graph.samples(alias) = {{-1000, 0}, {-2, 0}};
    stepUntilPruned(graph);
    for (const char* alias : {"a", "b", "c"})
        QCOMPARE(graph.samples(alias).first().first, -2.0);
}

void TestGraphPruning::samplesBeyondTheSpanAreForgotten()
{
    CurvesAtZero graph({"a"});
    graph.samples() = {{-8.5, 1}, {-4, 2}};
    stepUntilPruned(graph);
    QCOMPARE(graph.samples().first().first, -4.0);
    graph.fSpeed = 1000;
    stepUntilPruned(graph);
    QVERIFY(graph.samples().first().first >= -0.8);
    QCOMPARE(graph.samples().size(), 20);
}

void TestGraphPruning::aWiderGraphRemembersMore()
{
    CurvesAtZero graph({"a"});
    graph.resize(1000, 10);
    graph.samples() = {{-10.5, 1}, {-10, 2}};
    stepUntilPruned(graph);
    QCOMPARE(graph.samples().first().first, -10.0);
}

void TestGraphPruning::speedZeroForgetsOnlyUnorderedSamples()
{
    CurvesAtZero graph({"a"});
    graph.fSpeed = 0;
    graph.samples() = {{-1e9, 1}, {-1, 2}, {-5, 3}};
    stepUntilPruned(graph);
    QCOMPARE(graph.samples().size(), 12);
    QCOMPARE(graph.samples().at(0).first, -1e9);
    QCOMPARE(graph.samples().at(1).first, -5.0);
}

void TestGraphPruning::sizeZeroAndSpeedZeroAreHarmless()
{
    CurvesAtZero graph({"a"});
    graph.resize(0, 0);
    graph.fSpeed = 0;
    stepUntilPruned(graph);
    QCOMPARE(graph.samples().size(), 10);
}

REGISTER_TEST(TestGraphPruning, QApplication)
#include "tst_graph_pruning.moc"
