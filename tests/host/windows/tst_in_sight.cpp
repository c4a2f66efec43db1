// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/register_test.h"
#include "support/window_bench.h"
#include "windows/in_sight.h"

#include <QScreen>
#include <QtTest>

/// Windows whose screen has gone.
class TestInSight : public GuardedTest, private WindowBench
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup()
    {
        tearDown();
        GuardedTest::cleanup();
    }
    void aWindowOutOfSightComesBack_data();
    void aWindowOutOfSightComesBack();
    void aWindowInSightStaysWhereItIs();
    void windowAndPanelsComeBackWhenAScreenGoes();
    void aPlaceThatIsNoMoreIsNotGoneBackTo();
    void aFloatingPanelsPlaceThatIsNoMoreIsNotGoneBackTo();

private:
    static QRect room() { return QGuiApplication::primaryScreen()->availableGeometry(); }
    static bool isWhollySeen(const QWidget& window)
    {
        return room().contains(window.frameGeometry());
    }
};

void TestInSight::aWindowOutOfSightComesBack_data()
{
    QTest::addColumn<QRect>("place");
    QTest::newRow("right") << QRect(room().right() + 10, 100, 300, 200);
    QTest::newRow("left") << QRect(-2000, 100, 300, 200);
    QTest::newRow("its title above") << QRect(100, -150, 300, 200);
    QTest::newRow("all but a bit") << QRect(room().right() - 20, 100, 300, 200);
    QTest::newRow("larger than the screen") << QRect(5000, 5000, 5000, 5000);
}

void TestInSight::aWindowOutOfSightComesBack()
{
    QFETCH(QRect, place);
    QWidget window;
    window.setGeometry(place);
    window.show();
    bringIntoSight(window);
    TRY_VERIFY(isWhollySeen(window));
}

void TestInSight::aWindowInSightStaysWhereItIs()
{
    QWidget window;
    window.setGeometry(room().right() - 100, room().bottom() - 100, 300, 200);
    window.show();
    const QPoint place = window.pos();
    bringIntoSight(window);
    QCOMPARE(window.pos(), place);
}

void TestInSight::windowAndPanelsComeBackWhenAScreenGoes()
{
    openProbe();
    docks().first()->setFloating(true);
    docks().first()->move(5000, 5000);
    fWindow->move(-5000, 100);
    emit qApp->screenRemoved(QGuiApplication::primaryScreen());
    TRY_VERIFY(isWhollySeen(*fWindow));
    TRY_VERIFY(isWhollySeen(*docks().first()));
}

void TestInSight::aPlaceThatIsNoMoreIsNotGoneBackTo()
{
    fWindow->resize(500, 400);
    fWindow->move(5000, 5000);
    fWindow->close();
    openWindow();
    QCOMPARE(fWindow->size(), QSize(500, 400));
    TRY_VERIFY(room().contains(fWindow->geometry())); // the toolkit sees to that
}

void TestInSight::aFloatingPanelsPlaceThatIsNoMoreIsNotGoneBackTo()
{
    openProbe();
    docks().first()->setFloating(true);
    docks().first()->move(5000, 5000);
    fWindow->close();
    openWindow();
    openProbe();
    QVERIFY(docks().first()->isFloating());
    TRY_VERIFY(isWhollySeen(*docks().first()));
}

REGISTER_TEST(TestInSight, HostApplication)
#include "tst_in_sight.moc"
