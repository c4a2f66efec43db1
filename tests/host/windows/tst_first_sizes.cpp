// SPDX-License-Identifier: MIT
#include "support/drag.h"
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"
#include "windows/first_sizes.h"

#include <QHeaderView>
#include <QLabel>
#include <QPointer>
#include <QScrollBar>
#include <QSplitter>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <QtTest>

using Numbers = QVector<int>;

/// The sizes of a panel that nobody has arranged yet.
class TestFirstSizes : public GuardedTest
{
    Q_OBJECT

private slots:
    void columnsThatFitStayAsTheyAre();
    void theWidestColumnsGive();
    void noColumnVanishes();
    void aTableGetsWhatItWishesAndTheOthersTheRest();
    void theOthersKeepWhatIsUseful();
    void panesAlikeAreLeftAlone();
    void showsAllColumnsAndWhatIsBesideThem();
    void narrowsLongNamesInASmallWindow();
    void controlsAreCutOnlyWhereColumnsCannotGive();
    void isRightAgainWhenThePanelsSizeChanges();
    void leavesBordersAloneThatTheUserMoved();
    void leavesColumnsAloneThatTheUserMoved();
    void leavesColumnsAloneThatTheUserFitted();
    void panesShrinkBelowTheirControls();

private:
    void makePanel(int width, const QString& name);
    bool everyColumnIsInSight() const { return fTable->horizontalScrollBar()->maximum() == 0; }

    QScopedPointer<QWidget> fPanel;
    QSplitter* fSplitter = nullptr;
    QTreeWidget* fTable = nullptr;
    QLabel* fOther = nullptr;
};

/// A table whose widths are those of its contents, beside controls of 500 px.
void TestFirstSizes::makePanel(int width, const QString& name)
{
    fPanel.reset(new QWidget);
    fSplitter = new QSplitter(fPanel.data());
    (new QVBoxLayout(fPanel.data()))->addWidget(fSplitter);
    fTable = new QTreeWidget(fSplitter);
    fTable->setHeaderLabels({"Name", "Watch", "Graph", "Value", "Colour"});
    new QTreeWidgetItem(fTable, {name, "x", "x", "0.1234567890123456", ""});
    for (int column = 0; column < 5; ++column)
        fTable->resizeColumnToContents(column);
    auto* pane = new QWidget(fSplitter);
    fOther = new QLabel(pane);
    fOther->setFixedWidth(500);
    (new QVBoxLayout(pane))->addWidget(fOther);
    letPanesShrink(*fPanel);
    fPanel->resize(width, 300);
    fPanel->show();
    QVERIFY(QTest::qWaitForWindowExposed(fPanel.data(), patience));
    QCOMPARE(fPanel->width(), width);
}

void TestFirstSizes::columnsThatFitStayAsTheyAre()
{
    QCOMPARE(fittedColumns({100, 50, 50}, 200, {80, 80, 80}), Numbers({100, 50, 50}));
    QCOMPARE(fittedColumns({}, 0, {}), Numbers());
}

void TestFirstSizes::theWidestColumnsGive()
{
    QCOMPARE(fittedColumns({300, 50, 120}, 400, {80, 80, 80}), Numbers({230, 50, 120}));
    QCOMPARE(fittedColumns({300, 50, 120}, 220, {80, 80, 80}), Numbers({85, 50, 85}));
}

void TestFirstSizes::noColumnVanishes()
{
    QCOMPARE(fittedColumns({300, 50, 120}, -10, {80, 80, 90}), Numbers({80, 50, 90}));
}

void TestFirstSizes::aTableGetsWhatItWishesAndTheOthersTheRest()
{
    QCOMPARE(sharesOf({400, 0}, 1000, 150), Numbers({400, 600}));
    QCOMPARE(sharesOf({0, 400, 0}, 1000, 150), Numbers({300, 400, 300}));
}

void TestFirstSizes::theOthersKeepWhatIsUseful()
{
    QCOMPARE(sharesOf({900, 0}, 1000, 150), Numbers({850, 150}));
    QCOMPARE(sharesOf({600, 300, 0}, 750, 150), Numbers({400, 200, 150}));
    QCOMPARE(sharesOf({600, 0}, 100, 150), Numbers({0, 150}));
}

void TestFirstSizes::panesAlikeAreLeftAlone()
{
    QCOMPARE(sharesOf({0, 0}, 1000, 150), Numbers({0, 0}));
    QCOMPARE(sharesOf({300, 200}, 1000, 150), Numbers({300, 200}));
    makePanel(1000, "a");
    delete fTable;
    const QList<int> before = fSplitter->sizes();
    new FirstSizes(fPanel.data());
    QCOMPARE(fSplitter->sizes(), before);
}

void TestFirstSizes::showsAllColumnsAndWhatIsBesideThem()
{
    makePanel(1200, "A name of some length");
    const int name = fTable->columnWidth(0);
    new FirstSizes(fPanel.data());
    TRY_VERIFY(everyColumnIsInSight());
    QCOMPARE(fTable->columnWidth(0), name);
    QVERIFY(fSplitter->sizes().at(1) > 500);
}

void TestFirstSizes::narrowsLongNamesInASmallWindow()
{
    makePanel(560,
              "A name of such a length that it alone would fill a window of this width, easily");
    QVERIFY(!everyColumnIsInSight());
    new FirstSizes(fPanel.data());
    TRY_VERIFY(everyColumnIsInSight());
    QVERIFY(fTable->columnWidth(0) >= 50);
    QVERIFY(fSplitter->sizes().at(1) >= 150);
}

void TestFirstSizes::controlsAreCutOnlyWhereColumnsCannotGive()
{
    makePanel(1000, "A name of such a length that it would take the room of the controls, easily");
    const int name = fTable->columnWidth(0);
    new FirstSizes(fPanel.data());
    TRY_VERIFY(everyColumnIsInSight());
    QVERIFY(fSplitter->sizes().at(1) >= 500);
    QVERIFY(fTable->columnWidth(0) < name);
}

void TestFirstSizes::isRightAgainWhenThePanelsSizeChanges()
{
    makePanel(1200, "A name of some length");
    const int name = fTable->columnWidth(0);
    new FirstSizes(fPanel.data());
    fPanel->resize(560, 300);
    TRY_VERIFY(fTable->columnWidth(0) < name && everyColumnIsInSight());
    fPanel->resize(1200, 300);
    TRY_COMPARE(fTable->columnWidth(0), name);
    QVERIFY(everyColumnIsInSight());
}

void TestFirstSizes::leavesBordersAloneThatTheUserMoved()
{
    makePanel(1200, "a");
    QPointer<FirstSizes> sizes = new FirstSizes(fPanel.data());
    dragHandle(*fSplitter);
    TRY_VERIFY(!sizes);
}

void TestFirstSizes::leavesColumnsAloneThatTheUserMoved()
{
    makePanel(1200, "A name of some length");
    QPointer<FirstSizes> sizes = new FirstSizes(fPanel.data());
    fPanel->resize(1100, 300); // which moves columns, too
    TRY_VERIFY(everyColumnIsInSight());
    QVERIFY(sizes);
    QWidget& head = *fTable->header()->viewport();
    drag(head, QPoint(fTable->columnWidth(0) - 1, head.height() / 2));
    TRY_VERIFY(!sizes);
}

void TestFirstSizes::leavesColumnsAloneThatTheUserFitted()
{
    makePanel(560,
              "A name of such a length that it alone would fill a window of this width, easily");
    const int wide = fTable->columnWidth(0);
    new FirstSizes(fPanel.data());
    TRY_VERIFY(fTable->columnWidth(0) < wide);
    QWidget* const head = fTable->header()->viewport();
    QTest::mouseDClick(head, Qt::LeftButton, {}, {fTable->columnWidth(0) - 1, head->height() / 2});
    QVERIFY(fTable->columnWidth(0) >= wide);
    TRY_VERIFY(!fPanel->findChild<FirstSizes*>());
    fPanel->resize(600, 300);
    QVERIFY(fTable->columnWidth(0) >= wide);
}

void TestFirstSizes::panesShrinkBelowTheirControls()
{
    makePanel(1000, "a");
    QVERIFY(fPanel->minimumSizeHint().width() < 400);
}

REGISTER_TEST(TestFirstSizes, QApplication)
#include "tst_first_sizes.moc"
