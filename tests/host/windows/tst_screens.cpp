// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/register_test.h"
#include "support/window_bench.h"

#include <QProcess>
#include <QScreen>
#include <QtTest>

/// Windows on a real screen of X11 of 1440 by 900 that gets smaller, as when a larger one is
/// unplugged.
class TestScreens : public GuardedTest, private WindowBench
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { setUp(); }
    void cleanup()
    {
        useMode("1440x900");
        tearDown();
        GuardedTest::cleanup();
    }
    void windowAndPanelsComeBackWhenTheScreenGetsSmaller();
    void whatCanBeGraspedStaysWhereItIs();

private:
    static bool xrandr(const QStringList& words) { return QProcess::execute("xrandr", words) == 0; }
    static void useMode(const QString& mode);
    static QRect room() { return QGuiApplication::primaryScreen()->availableGeometry(); }
};

void TestScreens::initTestCase()
{
    GuardedTest::initTestCase();
    QVERIFY(xrandr({"--newmode", "800x600", "38.25", "800", "832", "912", "1024", "600", "603",
                    "607", "624"}));
    QVERIFY(xrandr({"--addmode", "screen", "800x600"}));
}

void TestScreens::useMode(const QString& mode)
{
    QVERIFY(xrandr({"--output", "screen", "--mode", mode}));
    const QStringList size = mode.split('x');
    TRY_COMPARE(room().size(), QSize(size[0].toInt(), size[1].toInt()));
}

void TestScreens::windowAndPanelsComeBackWhenTheScreenGetsSmaller()
{
    openProbe();
    docks().first()->setFloating(true);
    docks().first()->move(1200, 100);
    fWindow->resize(500, 400);
    fWindow->move(900, 480);
    TRY_COMPARE(fWindow->pos(), QPoint(900, 480));
    useMode("800x600");
    TRY_VERIFY(room().contains(fWindow->frameGeometry()));
    TRY_VERIFY(room().contains(docks().first()->frameGeometry()));
    QCOMPARE(fWindow->size(), QSize(500, 400));
}

void TestScreens::whatCanBeGraspedStaysWhereItIs()
{
    fWindow->resize(500, 400);
    fWindow->move(600, 300);
    TRY_COMPARE(fWindow->pos(), QPoint(600, 300));
    useMode("800x600");
    QCoreApplication::processEvents();
    QCOMPARE(fWindow->pos(), QPoint(600, 300));
}

REGISTER_TEST(TestScreens, HostApplication)
#include "tst_screens.moc"
