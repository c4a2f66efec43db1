// SPDX-License-Identifier: MIT
#include "support/files.h"
#include "support/guarded_test.h"
#include "support/modal_driver.h"
#include "support/panel.h"
#include "support/patience.h"
#include "support/redis_server.h"
#include "support/register_test.h"
#include "support/robot.h"

#include <zo/error.h>

#include <QTemporaryDir>
#include <QtTest>

namespace {

QByteArray fileWith(const QByteArray& flags)
{
    return "<stm_viewer><stm_value name=\"Arm/Angle\" alias=\"angle\" " + flags +
           "><color red=\"1\" green=\"2\" blue=\"3\"/></stm_value></stm_viewer>";
}

const QByteArray graphedKey = fileWith("watch=\"1\" graph=\"1\"");
const QByteArray graphedKeyThatIsNotWatched = fileWith("watch=\"0\" graph=\"1\"");
const QByteArray plainKey = fileWith("watch=\"0\" graph=\"0\"");

/// Merges a file of these bytes into the panel, as its user does.
void merge(const Panel& panel, const QByteArray& bytes)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("keys.xml");
    writeBytes(path, bytes);
    const ModalDriver driver([&path](QWidget& dialog) { chooseFile(dialog, path); });
    QTest::mouseClick(panel.button("Open"), Qt::LeftButton);
    QVERIFY(driver.isDone());
}

/// Shows a panel whose timers all run.
void showLive(const Panel& panel)
{
    panel.widget->resetTree();
    panel.widget->show();
    QVERIFY(QTest::qWaitForWindowExposed(panel.widget.get(), patience));
}

/// A panel on a real robot.
struct RobotPanel : Panel
{
    RobotPanel()
    {
        robot.command({"SET", "Arm/Angle", "0.5"});
        broker = ZoBroker::create("panel", "127.0.0.1", robot.port(), patientOptions());
        module->fMemoryProxy = boost::make_shared<ZoMemoryProxy>(broker->getProxy("ZoMemory", 0));
    }

    RedisServer robot;
    boost::shared_ptr<ZoBroker> broker;
};

int sampleCount(const Panel& panel)
{
    return static_cast<int>(panel.graph()->fSeries.value("angle").second.size());
}

} // namespace

/// What a panel shows of keys that a file brings while it runs.
class TestWidgetMerge : public GuardedTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void aCurveThatAFileBringsIsPlottedAtOnce();
    void aValueThatNobodyWatchesIsShown();
    void theTableIsMadeFirstAndValuesAreFetchedOnce();
    void aCurveWhoseKeyIsNoNumberIsDropped();
    void aCurveIsDroppedWhenItsValueCannotBeFetched();
    void withoutAnObserverNothingIsFetched();
    void withoutAMemoryNothingIsFetched();
    void aFailedMergeFetchesNothing();
};

void TestWidgetMerge::initTestCase()
{
    GuardedTest::initTestCase();
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void TestWidgetMerge::aCurveThatAFileBringsIsPlottedAtOnce()
{
    RobotPanel panel;
    showLive(panel);
    merge(panel, graphedKey);
    QCOMPARE(panel.row("angle")->checkState(Widget::fColGraph), Qt::Checked);
    TRY_VERIFY(sampleCount(panel) >= 5);
    QCOMPARE(panel.graph()->fSeries["angle"].second.first().second, 0.5);
    TRY_COMPARE(panel.row("angle")->text(Widget::fColValue), QString("0.5"));
    panel.robot.command({"SET", "Arm/Angle", "1.5"});
    TRY_COMPARE(panel.row("angle")->text(Widget::fColValue), QString("1.5"));
    TRY_COMPARE(panel.graph()->fSeries["angle"].second.last().second, 1.5);
}

void TestWidgetMerge::aValueThatNobodyWatchesIsShown()
{
    RobotPanel panel;
    showLive(panel);
    merge(panel, plainKey);
    TRY_COMPARE(panel.row("angle")->text(Widget::fColValue), QString("0.5"));
    QCOMPARE(panel.row("angle")->text(Widget::fColType), QString("float"));
}

void TestWidgetMerge::theTableIsMadeFirstAndValuesAreFetchedOnce()
{
    Panel panel;
    panel.add("before");
    showLive(panel);
    panel.dataTimer()->stop();
    QList<int> rowsAtFetch;
    int keysFetched = 0;
    panel.memory.answer = [&](const ZoValue& request) {
        rowsAtFetch += panel.tree()->topLevelItemCount();
        keysFetched = request.getSize();
        return FakeMemory::echo(request);
    };
    int rebuilds = 0;
    connect(panel.tree()->model(), &QAbstractItemModel::rowsInserted, [&] { ++rebuilds; });
    merge(panel, plainKey);
    QCOMPARE(rowsAtFetch, QList<int>{2});
    QCOMPARE(keysFetched, 2);
    QCOMPARE(rebuilds, 1);
}

void TestWidgetMerge::aCurveWhoseKeyIsNoNumberIsDropped()
{
    RobotPanel panel;
    panel.robot.command({"SET", "Arm/Angle", "\"text\""});
    showLive(panel);
    merge(panel, graphedKey);
    TRY_VERIFY(panel.graph()->fSeries.isEmpty());
    QCOMPARE(panel.row("angle")->checkState(Widget::fColGraph), Qt::Checked);
    TRY_COMPARE(panel.row("angle")->text(Widget::fColValue), QString("text"));
}

void TestWidgetMerge::aCurveIsDroppedWhenItsValueCannotBeFetched()
{
    Panel panel;
    showLive(panel);
    panel.memory.answer = [](const ZoValue&) -> ZoValue { throw ZoError("no link"); };
    merge(panel, graphedKey);
    QVERIFY(!panel.memory.calls.empty());
    QCOMPARE(panel.row("angle")->checkState(Widget::fColGraph), Qt::Checked);
    TRY_VERIFY(panel.graph()->fSeries.isEmpty());
    QCOMPARE(panel.row("angle")->checkState(Widget::fColGraph), Qt::Checked);
    QVERIFY(panel.module->fModel->fSTMVals[0]->graph);
    QCOMPARE(panel.row("angle")->text(Widget::fColValue), QString());
}

void TestWidgetMerge::withoutAnObserverNothingIsFetched()
{
    Panel panel;
    showLive(panel);
    panel.module->fGCInterface = nullptr;
    merge(panel, graphedKeyThatIsNotWatched);
    QCOMPARE(panel.tree()->topLevelItemCount(), 1);
    QCOMPARE(panel.row("angle")->checkState(Widget::fColGraph), Qt::Checked);
    QVERIFY(panel.memory.calls.empty());
}

void TestWidgetMerge::withoutAMemoryNothingIsFetched()
{
    Panel panel;
    showLive(panel);
    panel.module->fMemoryProxy.reset();
    merge(panel, graphedKeyThatIsNotWatched);
    QCOMPARE(panel.tree()->topLevelItemCount(), 1);
    QCOMPARE(panel.row("angle")->checkState(Widget::fColGraph), Qt::Checked);
    QVERIFY(panel.memory.calls.empty());
}

void TestWidgetMerge::aFailedMergeFetchesNothing()
{
    Panel panel;
    panel.add("before");
    showLive(panel);
    const QTemporaryDir folder;
    const QString path = folder.filePath("other.xml");
    writeBytes(path, "<other/>");
    std::unique_ptr<ModalDriver> box;
    const ModalDriver driver([&](QWidget& dialog) {
        QTimer::singleShot(0, [&box] { box = std::make_unique<ModalDriver>(acceptDialog); });
        chooseFile(dialog, path);
    });
    QTest::mouseClick(panel.button("Open"), Qt::LeftButton);
    QVERIFY(box && box->isDone());
    QVERIFY(panel.memory.calls.empty());
}

REGISTER_TEST(TestWidgetMerge, QApplication)
#include "tst_widget_merge.moc"
