// SPDX-License-Identifier: MIT
#include "looks/faults.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <QtTest>

/// What finds faults in windows finds each kind of them.
class TestFaults : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void aWindowAsLaidOutHasNone();
    void aPartThatSticksOut();
    void partsThatLieOnEachOther();
    void aLabelThatIsTooNarrow();
    void aLabelThatIsTooLow();
    void aButtonThatIsTooNarrow();
    void aColumnHeadThatIsTooNarrow();
    void aTextThatIsTooFaint();
    void aWindowThatIsTooLarge();
    void whatIsExceptedIsNotLookedAt();
    void contrastsAreThoseOfTheGuideline();

private:
    QString faults(const QList<QWidget*>& besides = {}) const
    {
        return faultsOf(*fWindow, fWindow->grab().toImage(), besides).join('\n');
    }

    QScopedPointer<QWidget> fWindow;
    QLabel* fLabel = nullptr;
    QLabel* fLines = nullptr;
    QPushButton* fButton = nullptr;
    QTreeWidget* fTable = nullptr;
};

void TestFaults::init()
{
    fWindow.reset(new QWidget);
    auto* layout = new QVBoxLayout(fWindow.data());
    layout->addWidget(fLabel = new QLabel("Name of the robot"));
    layout->addWidget(fLines = new QLabel("Words that take up more than one of the lines here"));
    layout->addWidget(fButton = new QPushButton("&Connect again"));
    layout->addWidget(fTable = new QTreeWidget);
    layout->addWidget(new QCheckBox("Autoscale"));
    fLines->setWordWrap(true);
    fTable->setHeaderLabels({"Value", "Colour"});
    fWindow->resize(250, 400);
    fWindow->grab(); // lays it out
}

void TestFaults::aWindowAsLaidOutHasNone()
{
    QCOMPARE(faults(), QString());
}

void TestFaults::aPartThatSticksOut()
{
    fButton->move(100, fButton->y());
    QVERIFY2(faults().contains("sticks out"), qPrintable(faults()));
}

void TestFaults::partsThatLieOnEachOther()
{
    fButton->move(fButton->x(), fLabel->y());
    QVERIFY2(faults().contains("lies on"), qPrintable(faults()));
}

void TestFaults::aLabelThatIsTooNarrow()
{
    fLabel->resize(50, fLabel->height());
    QVERIFY2(faults().startsWith("QLabel \"Name of the robot\""), qPrintable(faults()));
}

void TestFaults::aLabelThatIsTooLow()
{
    fLines->resize(fLines->width(), fLines->height() / 2);
    QVERIFY2(faults().startsWith("QLabel \"Words"), qPrintable(faults()));
}

void TestFaults::aButtonThatIsTooNarrow()
{
    fButton->resize(50, fButton->height());
    QVERIFY2(faults().startsWith("QPushButton"), qPrintable(faults()));
}

void TestFaults::aColumnHeadThatIsTooNarrow()
{
    fTable->setColumnWidth(0, 30);
    QVERIFY2(faults().startsWith("column head \"Value\""), qPrintable(faults()));
}

void TestFaults::aTextThatIsTooFaint()
{
    QPalette colors;
    colors.setColor(QPalette::WindowText, "#999999");
    fLabel->setPalette(colors);
    QVERIFY2(faults().contains("contrast 2."), qPrintable(faults()));
    fLabel->setEnabled(false); // whatever cannot be used may be pale
    QCOMPARE(faults(), QString());
}

void TestFaults::aWindowThatIsTooLarge()
{
    fWindow->resize(10000, 400);
    fWindow->grab();
    QVERIFY2(faults().contains("larger than the screen"), qPrintable(faults()));
}

void TestFaults::whatIsExceptedIsNotLookedAt()
{
    fButton->resize(50, fButton->height());
    QCOMPARE(faults({fButton}), QString());
}

void TestFaults::contrastsAreThoseOfTheGuideline()
{
    QCOMPARE(contrastOf(Qt::black, Qt::white), 21.0);
    QCOMPARE(contrastOf("#123456", "#123456"), 1.0);
    QCOMPARE(qRound(100 * contrastOf("#777777", Qt::white)), 448);
}

REGISTER_TEST(TestFaults, QApplication)
#include "tst_faults.moc"
