// SPDX-License-Identifier: MIT
#include "connection/connection_bar.h"
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QStyle>
#include <QtTest>

/// What a window's status bar says about the connection.
class TestConnectionBar : public GuardedTest
{
    Q_OBJECT

private slots:
    void saysSinceWhen();
    void saysTheDateOfATimeOfAnotherDay();
    void itsIconShowsTheState();
    void saysWhyTheRobotIsLost();
    void saysWhatToDoWhenTheRobotIsBack();
    void aNoteHidesTheSentenceButNeverTheState();
    void aNoteEndsByItself();
    void aRefreshedBarKeepsItsNote();
    void theTimeIsShownAnewNowAndThen();
    void aChangeOfStateEndsANote();
    void textsOfARobotAreShownAsTheyAre();
    void aLongReasonDoesNotWidenTheWindow();
    void aRefusalIsToldAsFinal();
    void offersToConnectAgainOnlyWhenRefused();
    void showsWhatGoesOverTheLink();
    void numbersDoNotMakeItJump();
    void paintsNothingWhenNothingHasChanged();
};

namespace {

constexpr int aDay = 24 * 60 * 60 * 1000; ///< ms
const QDateTime noon(QDate(2026, 11, 20), QTime(12, 0, 0));

ConnectionState up()
{
    return {true, false, noon, {}};
}

ConnectionState down(const QString& cause)
{
    return {false, true, noon, cause};
}

ConnectionState refused(const QString& cause)
{
    return {false, true, noon, cause, true};
}

QLabel* stateLabel(const ConnectionBar& bar)
{
    return bar.findChild<QLabel*>("connectionState");
}

QLabel* trafficLabel(const ConnectionBar& bar)
{
    return bar.findChild<QLabel*>("connectionTraffic");
}

ZoLinkStatus busyLink(double answersPerSecond)
{
    ZoLinkStatus link;
    link.connected = true;
    link.answersPerSecond = answersPerSecond;
    return link;
}

/// Counts how often a widget is painted.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget* widget) { widget->installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

    int count = 0;
};

QLabel* detailLabel(const ConnectionBar& bar)
{
    return bar.findChild<QLabel*>("connectionDetail");
}

} // namespace

void TestConnectionBar::saysSinceWhen()
{
    QCOMPARE(connectionBrief(up(), noon.addSecs(60)), QString("Connected since 12:00:00"));
    QCOMPARE(connectionBrief(down("x"), noon.addSecs(60)),
             QString("Connection lost since 12:00:00"));
    QCOMPARE(connectionDetail(up(), "robot:1"), QString("robot:1"));
}

void TestConnectionBar::saysTheDateOfATimeOfAnotherDay()
{
    QCOMPARE(connectionBrief(up(), noon.addDays(1)),
             QString("Connected since 2026-11-20 12:00:00"));
}

void TestConnectionBar::itsIconShowsTheState()
{
    ConnectionBar bar("robot:1", nullptr);
    const auto shows = [&bar](QStyle::StandardPixmap icon) {
        const QStyle* style = bar.style();
        const int size = style->pixelMetric(QStyle::PM_SmallIconSize);
        const QImage wanted = style->standardIcon(icon).pixmap(size, size).toImage();
        for (const QLabel* label : bar.findChildren<QLabel*>())
            if (label->pixmap(Qt::ReturnByValue).toImage() == wanted)
                return !wanted.isNull();
        return false;
    };
    bar.showState(up());
    QVERIFY(shows(QStyle::SP_DialogApplyButton));
    QVERIFY(!shows(QStyle::SP_MessageBoxWarning));
    bar.showState(down("It fell over."));
    QVERIFY(shows(QStyle::SP_MessageBoxWarning));
    QVERIFY(!shows(QStyle::SP_DialogApplyButton));
    bar.showState(refused("Who are you?"));
    QVERIFY(shows(QStyle::SP_MessageBoxCritical));
    QVERIFY(!shows(QStyle::SP_MessageBoxWarning));
}

void TestConnectionBar::saysWhyTheRobotIsLost()
{
    const QString text = connectionDetail(down("robot:1 fell over"), "robot:1");
    QVERIFY(text.contains("robot:1 fell over"));
    QVERIFY(text.contains("Trying again"));
}

void TestConnectionBar::saysWhatToDoWhenTheRobotIsBack()
{
    const QString text = connectionDetail({true, true, noon, {}}, "robot:1");
    QVERIFY(text.contains("robot:1 is back"));
    QVERIFY(text.contains("subscription mode"));
}

void TestConnectionBar::aNoteHidesTheSentenceButNeverTheState()
{
    ConnectionBar bar("robot:1", nullptr);
    bar.showState(up());
    const QString state = stateLabel(bar)->text();
    QVERIFY(state.startsWith("Connected since"));
    bar.note("a word");
    QCOMPARE(detailLabel(bar)->text(), QString("a word"));
    QCOMPARE(stateLabel(bar)->text(), state);
}

void TestConnectionBar::aNoteEndsByItself()
{
    ConnectionBar bar("robot:1", {50, aDay}, nullptr);
    bar.showState(up());
    bar.note("a word");
    QCOMPARE(detailLabel(bar)->text(), QString("a word"));
    TRY_COMPARE(detailLabel(bar)->text(), QString("robot:1"));
    bar.note("another");
    QCOMPARE(detailLabel(bar)->text(), QString("another"));
    TRY_COMPARE(detailLabel(bar)->text(), QString("robot:1"));
}

void TestConnectionBar::aRefreshedBarKeepsItsNote()
{
    ConnectionBar bar("robot:1", {aDay, 10}, nullptr);
    bar.showState(up());
    bar.note("a word");
    for (int refresh = 0; refresh < 3; ++refresh) {
        stateLabel(bar)->clear();
        TRY_VERIFY(!stateLabel(bar)->text().isEmpty());
    }
    QCOMPARE(detailLabel(bar)->text(), QString("a word"));
}

void TestConnectionBar::theTimeIsShownAnewNowAndThen()
{
    ConnectionBar bar("robot:1", {aDay, 10}, nullptr);
    bar.showState(down("It fell over."));
    const QString state = stateLabel(bar)->text();
    stateLabel(bar)->setText("as it was yesterday");
    detailLabel(bar)->clear();
    TRY_COMPARE(stateLabel(bar)->text(), state);
    QVERIFY(detailLabel(bar)->text().contains("It fell over."));
}

void TestConnectionBar::aChangeOfStateEndsANote()
{
    ConnectionBar bar("robot:1", nullptr);
    bar.showState(up());
    bar.note("a word");
    bar.showState(down("It fell over."));
    QVERIFY(detailLabel(bar)->text().contains("It fell over."));
    QVERIFY(stateLabel(bar)->text().startsWith("Connection lost since"));
}

void TestConnectionBar::textsOfARobotAreShownAsTheyAre()
{
    ConnectionBar bar("robot:1", nullptr);
    bar.showState(down("<b>bold</b>"));
    QCOMPARE(detailLabel(bar)->textFormat(), Qt::PlainText);
    QVERIFY(detailLabel(bar)->text().contains("<b>bold</b>"));
    QVERIFY(detailLabel(bar)->toolTip().contains("&lt;b&gt;"));
}

void TestConnectionBar::aLongReasonDoesNotWidenTheWindow()
{
    ConnectionBar bar("robot:1", nullptr);
    bar.showState(down("short"));
    const int width = bar.minimumSizeHint().width();
    bar.showState(down(QString(5000, 'x')));
    QCOMPARE(bar.minimumSizeHint().width(), width);
}

void TestConnectionBar::aRefusalIsToldAsFinal()
{
    QCOMPARE(connectionBrief(refused("x"), noon),
             QString("Connection refused, lost since 12:00:00"));
    QCOMPARE(connectionDetail(refused("robot:1 knows nobody"), "robot:1"),
             QString("Not trying again: robot:1 knows nobody"));
}

void TestConnectionBar::offersToConnectAgainOnlyWhenRefused()
{
    ConnectionBar bar("robot:1", nullptr);
    bar.show();
    auto* button = bar.findChild<QPushButton*>("connectAgain");
    QVERIFY(!button->isVisible());
    QSignalSpy again(&bar, &ConnectionBar::connectAgainRequested);
    bar.showState(down("It fell over."));
    QVERIFY(!button->isVisible());
    bar.showState(refused("Who are you?"));
    QVERIFY(button->isVisible());
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(again.size(), 1);
    bar.showState(up());
    QVERIFY(!button->isVisible());
}

void TestConnectionBar::showsWhatGoesOverTheLink()
{
    ConnectionBar bar("robot:1", nullptr);
    QCOMPARE(trafficLabel(bar)->text(), QString());
    bar.showTraffic(busyLink(10));
    QCOMPARE(trafficLabel(bar)->text(), QString("10 answers/s"));
    QVERIFY(trafficLabel(bar)->toolTip().contains("Newest answer: "));
    bar.showTraffic({});
    QCOMPARE(trafficLabel(bar)->text(), QString());
    QCOMPARE(trafficLabel(bar)->toolTip(), QString());
}

void TestConnectionBar::numbersDoNotMakeItJump()
{
    ConnectionBar bar("robot:1", nullptr);
    bar.resize(1200, bar.sizeHint().height());
    bar.show();
    bar.showState(up());
    bar.showTraffic(busyLink(1000));
    QCoreApplication::processEvents();
    const QRect detail = detailLabel(bar)->geometry();
    const QRect traffic = trafficLabel(bar)->geometry();
    for (const double rate : {0.0, 0.1, 9.9, 123.0}) {
        bar.showTraffic(busyLink(rate));
        QCoreApplication::processEvents();
        QCOMPARE(detailLabel(bar)->geometry(), detail);
        QCOMPARE(trafficLabel(bar)->geometry(), traffic);
    }
}

void TestConnectionBar::paintsNothingWhenNothingHasChanged()
{
    ConnectionBar bar("robot:1", nullptr);
    bar.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bar));
    PaintCounter paints(trafficLabel(bar));
    bar.showTraffic(busyLink(10));
    TRY_VERIFY(paints.count > 0);
    QCoreApplication::processEvents();
    const int before = paints.count;
    for (int i = 0; i < 5; ++i) {
        bar.showTraffic(busyLink(10));
        QCoreApplication::processEvents();
    }
    QCOMPARE(paints.count, before);
    bar.showTraffic(busyLink(20));
    TRY_VERIFY(paints.count > before);
}

REGISTER_TEST(TestConnectionBar, QApplication)
#include "tst_connection_bar.moc"
