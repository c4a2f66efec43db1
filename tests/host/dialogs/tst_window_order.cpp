// SPDX-License-Identifier: MIT
#include "dialogs/window_order.h"
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"

#include <QDialog>
#include <QWindow>
#include <QtTest>

namespace {

class CountingWindow : public QWidget
{
public:
    int openings() const { return fOpenings; }

protected:
    void showEvent(QShowEvent*) override { ++fOpenings; }

private:
    int fOpenings = 0;
};

} // namespace

/// Which window is in front.
class TestWindowOrder : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void aWindowIsShownInFront();
    void anOpenWindowComesToTheFront();
    void whereTheUserChoosesAnOpenWindowIsOpenedAnew();
    void whereTheUserChoosesAWindowBelowADialogStays();
    void aDialogStandsOverItsWindowAndSurvivesIt();

private:
    QScopedPointer<CountingWindow> fWindow;
    QScopedPointer<QWidget> fOther;
};

void TestWindowOrder::init()
{
    fWindow.reset(new CountingWindow);
    fOther.reset(new QWidget);
    fWindow->show();
    bringToFront(*fOther);
    TRY_VERIFY(fOther->isActiveWindow());
}

void TestWindowOrder::aWindowIsShownInFront()
{
    QVERIFY(!fWindow->isActiveWindow());
    QVERIFY(mayPlaceWindows());
}

void TestWindowOrder::anOpenWindowComesToTheFront()
{
    bringToFront(*fWindow);
    TRY_VERIFY(fWindow->isActiveWindow());
    QCOMPARE(fWindow->openings(), 1);
}

void TestWindowOrder::whereTheUserChoosesAnOpenWindowIsOpenedAnew()
{
    bringToFront(*fWindow, false);
    QCOMPARE(fWindow->openings(), 2);
    QVERIFY(fWindow->isVisible());
}

void TestWindowOrder::whereTheUserChoosesAWindowBelowADialogStays()
{
    QDialog dialog(fWindow.data());
    dialog.open();
    TRY_VERIFY(dialog.isVisible());
    bringToFront(*fWindow, false);
    QCOMPARE(fWindow->openings(), 1);
    QVERIFY(dialog.isVisible());
}

void TestWindowOrder::aDialogStandsOverItsWindowAndSurvivesIt()
{
    QDialog dialog;
    standOver(dialog, fWindow.data());
    dialog.show();
    QCOMPARE(dialog.windowHandle()->transientParent(), fWindow->windowHandle());
    fWindow.reset();
    QVERIFY(dialog.isVisible());
    standOver(dialog, nullptr);
    QVERIFY(!dialog.windowHandle()->transientParent());
}

REGISTER_TEST(TestWindowOrder, QApplication)
#include "tst_window_order.moc"
