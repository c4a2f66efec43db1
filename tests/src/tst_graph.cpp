// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"
#include "support/sampled_graph.h"

#include "graph_clock.h"

#include <QSignalSpy>
#include <QtTest>

#include <cmath>
#include <limits>
#include <memory>

namespace {

/// Counts its paints.
class CountingGraph : public Graph
{
public:
    using Graph::Graph;
    int fPaints = 0;

protected:
    void paintEvent(QPaintEvent* event) override
    {
        ++fPaints;
        Graph::paintEvent(event);
    }
};

} // namespace

/// Series, sampling, pruning and the automatic range.
class TestGraph : public GuardedTest
{
    Q_OBJECT

private slots:
    void startsEmptyAndStill();
    void constantsAreTheGivenOnes();
    void addingAKeyTwiceKeepsItsCurve();
    void removingDropsTheCurveOnly();
    void initStartsSampling();
    void initAgainTakesAFreshTimerAndClock();
    void samplesKeepTheirTimesWhenInitIsCalledAgain();
    void timerAndClockEndWithTheGraph();
    void playBeforeInitIsIgnored();
    void pausingEmptiesEveryCurve();
    void playingARunningGraphChangesNothing();
    void aStepSamplesEveryCurveByAlias();
    void aKeyThatIsNoNumberDropsOut();
    void latin1AliasesAreFound();
    void aGraphWithoutModelKeepsItsCurvesAndDoesNotRepaint();
    void eachStepRepaints_data();
    void eachStepRepaints();
    void aHiddenOrPausedGraphDoesNotPaint();
    void autoscaleFindsTheRange_data();
    void autoscaleFindsTheRange();
    void samplesReplacedFromOutsideCount();
    void aSharedSeriesMapIsLeftAlone();
};

void TestGraph::startsEmptyAndStill()
{
    const auto model = modelWith({});
    const Graph graph(model, nullptr);
    QVERIFY(graph.fSeries.isEmpty());
    QVERIFY(!graph.fTimer);
    QVERIFY(!graph.fClock);
    QCOMPARE(graph.fSpeed, 100.0);
    QVERIFY(graph.fAutoscale);
    QCOMPARE(graph.fMinY, 0.0);
    QCOMPARE(graph.fMaxY, 0.0);
    QWidget parent;
    QCOMPARE((new Graph({}, &parent))->parentWidget(), &parent);
}

void TestGraph::constantsAreTheGivenOnes()
{
    QCOMPARE(Graph::fInterval, 40);
    QCOMPARE(Graph::fMargin, 2);
    QCOMPARE(Graph::fScaleAcc, 3);
    QCOMPARE(Graph::fScaleMargin, 10);
    QCOMPARE(Graph::fDefaultSpeed, 100);
    QCOMPARE(Graph::fMaxSpeed, 1000);
    QCOMPARE(Graph::fMinSpeed, 0);
    QCOMPARE(Graph::fDefaultMinY, -100.0);
    QCOMPARE(Graph::fDefaultMaxY, 100.0);
    QCOMPARE(Graph::fMinYPossible, -2147483647.0);
    QCOMPARE(Graph::fMaxYPossible, 2147483647.0);
    QCOMPARE(Graph::fDefaultColor, QColor(70, 188, 236, 255));
}

void TestGraph::addingAKeyTwiceKeepsItsCurve()
{
    const auto model = modelWith({"a"});
    Graph graph(model, nullptr);
    Color first;
    Color second;
    graph.addSTMValue("a", &first);
    samplesOf(graph, "a").append({1, 2});
    graph.addSTMValue("a", &second);
    QCOMPARE(graph.fSeries.size(), 1);
    QCOMPARE(graph.fSeries["a"].first, &first);
    QCOMPARE(samplesOf(graph, "a").size(), 1);
}

void TestGraph::removingDropsTheCurveOnly()
{
    const auto model = modelWith({});
    Graph graph(model, nullptr);
    graph.addSTMValue("a", nullptr);
    graph.addSTMValue("b", nullptr);
    graph.deleteSTMValue("none");
    QCOMPARE(graph.fSeries.size(), 2);
    graph.deleteSTMValue("a");
    QCOMPARE(graph.fSeries.keys(), QStringList("b"));
    graph.clear();
    QVERIFY(graph.fSeries.isEmpty());
}

void TestGraph::initStartsSampling()
{
    const auto model = modelWith({"a"});
    Graph graph(model, nullptr);
    graph.resize(800, 400);
    graph.addSTMValue("a", nullptr);
    graph.init();
    QCOMPARE(graph.fTimer->interval(), 40);
    QVERIFY(graph.fTimer->isActive());
    QVERIFY(!graph.fTimer->parent());
    TRY_VERIFY(samplesOf(graph, "a").size() >= 3);
    const QList<TimeValue> samples = samplesOf(graph, "a");
    QCOMPARE(samples.last().second, 3.0);
    QVERIFY(samples.at(0).first < samples.at(1).first);
    QVERIFY(samples.at(0).first >= 0.03);
}

void TestGraph::initAgainTakesAFreshTimerAndClock()
{
    const auto model = modelWith({"a"});
    Graph graph(model, nullptr);
    graph.addSTMValue("a", nullptr);
    graph.init();
    const QPointer<QTimer> oldTimer = graph.fTimer;
    samplesOf(graph, "a").append({5, 6});
    graph.init();
    QVERIFY(!oldTimer);
    QVERIFY(graph.fTimer->isActive());
    QCOMPARE(samplesOf(graph, "a").size(), 1);
}

void TestGraph::samplesKeepTheirTimesWhenInitIsCalledAgain()
{
    const auto model = modelWith({"a"});
    Graph graph(model, nullptr);
    graph.resize(800, 400);
    graph.addSTMValue("a", nullptr);
    graph.init();
    TRY_VERIFY(!samplesOf(graph, "a").isEmpty());
    const double before = samplesOf(graph, "a").first().first;
    QVERIFY(before > 0);
    graph.init();
    stepUntilPruned(graph);
    QCOMPARE(samplesOf(graph, "a").first().first, before);
    QVERIFY(samplesOf(graph, "a").last().first >= before);
}

void TestGraph::timerAndClockEndWithTheGraph()
{
    const auto time = std::make_shared<qint64>(0);
    QPointer<QTimer> timer;
    {
        Graph graph({}, nullptr);
        graph.init();
        *graph.fClock = GraphClock([time] { return *time; });
        QCOMPARE(time.use_count(), 2);
        graph.init();
        QVERIFY2(time.use_count() == 2, "the clock before is deleted");
        timer = graph.fTimer;
        QVERIFY(timer);
    }
    QVERIFY(!timer);
    QCOMPARE(time.use_count(), 1);
}

void TestGraph::playBeforeInitIsIgnored()
{
    const auto model = modelWith({"a"});
    Graph graph(model, nullptr);
    graph.addSTMValue("a", nullptr);
    samplesOf(graph, "a").append({1, 2});
    graph.setPlay(false);
    graph.setPlay(true);
    QVERIFY(!graph.fTimer);
    QCOMPARE(samplesOf(graph, "a").size(), 1);
}

void TestGraph::pausingEmptiesEveryCurve()
{
    const auto model = modelWith({"a", "b"});
    Graph graph(model, nullptr);
    graph.resize(800, 400);
    Color color;
    graph.addSTMValue("a", &color);
    graph.addSTMValue("b", nullptr);
    graph.init();
    graph.xUpdateTime();
    graph.setPlay(false);
    QVERIFY(!graph.fTimer->isActive());
    QCOMPARE(graph.fSeries.keys(), QStringList({"a", "b"}));
    QCOMPARE(graph.fSeries["a"].first, &color);
    QVERIFY(samplesOf(graph, "a").isEmpty());
    QVERIFY(samplesOf(graph, "b").isEmpty());
    graph.setPlay(true);
    QVERIFY(graph.fTimer->isActive());
    QCOMPARE(graph.fTimer->interval(), 40);
    TRY_VERIFY(!samplesOf(graph, "b").isEmpty());
}

void TestGraph::playingARunningGraphChangesNothing()
{
    const auto model = modelWith({"a"});
    Graph graph(model, nullptr);
    graph.resize(800, 400);
    graph.addSTMValue("a", nullptr);
    graph.init();
    graph.xUpdateTime();
    graph.setPlay(true);
    QVERIFY(graph.fTimer->isActive());
    QCOMPARE(graph.fTimer->interval(), 40);
    QCOMPARE(samplesOf(graph, "a").size(), 1);
}

void TestGraph::aStepSamplesEveryCurveByAlias()
{
    const auto model = modelWith({"a", "b"});
    model->addSTMVal("a", "other"); // a key named like another's alias
    model->refreshSTMVal("key/b", ZoValue(-0.5));
    Graph graph(model, nullptr);
    graph.resize(800, 400);
    graph.addSTMValue("a", nullptr);
    graph.addSTMValue("b", nullptr);
    graph.xUpdateTime();
    QCOMPARE(samplesOf(graph, "a").size(), 1);
    QCOMPARE(samplesOf(graph, "a").first().second, 3.0);
    QCOMPARE(samplesOf(graph, "b").first().second, -0.5);
}

void TestGraph::aKeyThatIsNoNumberDropsOut()
{
    const auto model = modelWith({"a", "b", "c"});
    Graph graph(model, nullptr);
    graph.resize(800, 400);
    for (const char* name : {"a", "b", "c", "key/a", "unknown"})
        graph.addSTMValue(name, nullptr);
    graph.xUpdateTime();
    QCOMPARE(graph.fSeries.keys(), QStringList({"a", "b", "c"}));
    model->refreshSTMVal("key/b", ZoValue(std::string("text")));
    graph.xUpdateTime();
    QCOMPARE(graph.fSeries.keys(), QStringList({"a", "c"}));
    QCOMPARE(samplesOf(graph, "c").size(), 2);
    model->refreshSTMVal("key/b", ZoValue(4));
    graph.xUpdateTime();
    QCOMPARE(graph.fSeries.keys(), QStringList({"a", "c"}));
}

void TestGraph::latin1AliasesAreFound()
{
    const QString alias = QString::fromLatin1("\xe9paule");
    const auto model = modelWith({alias});
    Graph graph(model, nullptr);
    graph.addSTMValue(alias, nullptr);
    graph.xUpdateTime();
    QCOMPARE(graph.fSeries.keys(), QStringList(alias));
}

void TestGraph::aGraphWithoutModelKeepsItsCurvesAndDoesNotRepaint()
{
    auto model = modelWith({"a"});
    CountingGraph graph(model, nullptr);
    graph.addSTMValue("a", nullptr);
    graph.show();
    QVERIFY(QTest::qWaitForWindowExposed(&graph, patience));
    graph.init();
    TRY_VERIFY(!samplesOf(graph, "a").isEmpty());
    model.reset();
    QCoreApplication::processEvents();
    const auto size = samplesOf(graph, "a").size();
    const int paints = graph.fPaints;
    QSignalSpy ticks(graph.fTimer, SIGNAL(timeout()));
    TRY_VERIFY(ticks.size() >= 3);
    QCoreApplication::processEvents();
    QCOMPARE(samplesOf(graph, "a").size(), size);
    QCOMPARE(graph.fPaints, paints);
    Graph never({}, nullptr);
    never.xUpdateTime();
}

void TestGraph::eachStepRepaints_data()
{
    QTest::addColumn<QStringList>("graphed");
    QTest::newRow("a curve") << QStringList("a");
    QTest::newRow("a curve that drops out") << QStringList("unknown");
    QTest::newRow("no curve") << QStringList();
}

void TestGraph::eachStepRepaints()
{
    QFETCH(QStringList, graphed);
    const auto model = modelWith({"a"});
    CountingGraph graph(model, nullptr);
    graph.init();
    graph.fTimer->setInterval(std::numeric_limits<int>::max());
    graph.show();
    QVERIFY(QTest::qWaitForWindowExposed(&graph, patience));
    for (const QString& name : graphed)
        graph.addSTMValue(name, nullptr);
    QCoreApplication::processEvents();
    const int paints = graph.fPaints;
    graph.xUpdateTime();
    TRY_COMPARE(graph.fPaints, paints + 1);
}

void TestGraph::aHiddenOrPausedGraphDoesNotPaint()
{
    const auto model = modelWith({"a"});
    CountingGraph graph(model, nullptr);
    graph.addSTMValue("a", nullptr);
    graph.init();
    QSignalSpy ticks(graph.fTimer, SIGNAL(timeout()));
    TRY_VERIFY(ticks.size() >= 2);
    QCOMPARE(graph.fPaints, 0);
    graph.show();
    TRY_VERIFY(graph.fPaints >= 3);
    graph.hide();
    QCoreApplication::processEvents();
    const int paints = graph.fPaints;
    ticks.clear();
    TRY_VERIFY(ticks.size() >= 3);
    QCOMPARE(graph.fPaints, paints);
    graph.show();
    QVERIFY(QTest::qWaitForWindowExposed(&graph, patience));
    graph.setPlay(false);
    QCoreApplication::processEvents();
    const int paused = graph.fPaints;
    QTimer other;
    QSignalSpy time(&other, SIGNAL(timeout()));
    other.start(3 * Graph::fInterval);
    TRY_VERIFY(!time.isEmpty());
    QCOMPARE(graph.fPaints, paused);
}

void TestGraph::autoscaleFindsTheRange_data()
{
    const double infinity = std::numeric_limits<double>::infinity();
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    using Values = QList<double>;
    QTest::addColumn<QList<double>>("first");
    QTest::addColumn<QList<double>>("second");
    QTest::addColumn<double>("bottom");
    QTest::addColumn<double>("top");
    QTest::newRow("two curves") << Values{1, 2} << Values{-7, 0} << -7.0 << 2.0;
    QTest::newRow("one value") << Values{5, 5} << Values{5} << -5.0 << 15.0;
    QTest::newRow("no samples") << Values{} << Values{} << 2147483647.0 << -2147483647.0;
    QTest::newRow("NaN among others")
        << Values{notANumber, 2} << Values{4, notANumber} << 2.0 << 4.0;
    QTest::newRow("infinities among others")
        << Values{infinity, 2} << Values{4, -infinity} << 2.0 << 4.0;
    QTest::newRow("nothing finite")
        << Values{infinity} << Values{notANumber} << 2147483647.0 << -2147483647.0;
    QTest::newRow("beyond the search") << Values{1e12, 2e12} << Values{} << 2147483647.0 << 2e12;
}

void TestGraph::autoscaleFindsTheRange()
{
    QFETCH(QList<double>, first);
    QFETCH(QList<double>, second);
    Graph graph({}, nullptr);
    graph.addSTMValue("a", nullptr);
    graph.addSTMValue("b", nullptr);
    for (const double value : first)
        samplesOf(graph, "a").append({0, value});
    for (const double value : second)
        samplesOf(graph, "b").append({0, value});
    graph.xSetScaleFromAutoScale();
    QTEST(graph.fMinY, "bottom");
    QTEST(graph.fMaxY, "top");
}

void TestGraph::samplesReplacedFromOutsideCount()
{
    const auto model = modelWith({"a"});
    Graph graph(model, nullptr);
    graph.resize(800, 400);
    graph.addSTMValue("a", nullptr);
    graph.init();
    graph.xUpdateTime();
    graph.xSetScaleFromAutoScale();
    QCOMPARE(graph.fMaxY, 13.0);
    samplesOf(graph, "a") = {{0, 50}, {0, 60}};
    graph.xSetScaleFromAutoScale();
    QCOMPARE(graph.fMinY, 50.0);
    graph.xUpdateTime();
    QCOMPARE(samplesOf(graph, "a").size(), 3);
    graph.xSetScaleFromAutoScale();
    QCOMPARE(graph.fMinY, 3.0);
    QCOMPARE(graph.fMaxY, 60.0);
}

void TestGraph::aSharedSeriesMapIsLeftAlone()
{
    const auto model = modelWith({"a"});
    Graph graph(model, nullptr);
    graph.addSTMValue("a", nullptr);
    samplesOf(graph, "a") = {{-1, 1}};
    const auto copy = graph.fSeries;
    graph.xUpdateTime();
    QCOMPARE(copy["a"].second.size(), 1);
    QVERIFY(!samplesOf(graph, "a").isEmpty());
    graph.xCleanup();
    QCOMPARE(copy["a"].second.size(), 1);
    QVERIFY(samplesOf(graph, "a").isEmpty());
}

REGISTER_TEST(TestGraph, QApplication)
#include "tst_graph.moc"
