// SPDX-License-Identifier: MIT
#include "connection/connection_bar.h"
#include "connection/elided_label.h"
#include "support/guarded_test.h"
#include "support/outage.h"
#include "support/patience.h"
#include "support/register_test.h"

#include <QLabel>
#include <QStyle>
#include <QtTest>

/// What a window's status bar says about the connection.
class TestConnectionBar : public GuardedTest
{
    Q_OBJECT

private slots:
    void itsIconShowsTheState();
    void aNoteHidesTheSentenceButNeverTheState();
    void aNoteEndsByItself();
    void aRefreshedBarKeepsItsNote();
    void theTimeIsShownAnewNowAndThen();
    void aChangeOfStateEndsANote();
    void textsOfARobotAreShownAsTheyAre();
    void aLongReasonDoesNotWidenTheWindow();
    void aLongReasonEndsInAnEllipsis();
    void showsWhatGoesOverTheLink();
    void numbersDoNotMakeItJump();
    void paintsNothingWhenNothingHasChanged();
};

namespace {

constexpr int aDay = 24 * 60 * 60 * 1000; ///< ms
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
    bar.showState(connectedState());
    QVERIFY(shows(QStyle::SP_DialogApplyButton));
    QVERIFY(!shows(QStyle::SP_MessageBoxWarning));
    bar.showState(lostState("It fell over."));
    QVERIFY(shows(QStyle::SP_MessageBoxWarning));
    QVERIFY(!shows(QStyle::SP_DialogApplyButton));
    bar.showState(refusedState("Who are you?"));
    QVERIFY(shows(QStyle::SP_MessageBoxCritical));
    QVERIFY(!shows(QStyle::SP_MessageBoxWarning));
}

void TestConnectionBar::aNoteHidesTheSentenceButNeverTheState()
{
    ConnectionBar bar("robot:1", nullptr);
    bar.showState(connectedState());
    const QString state = stateLabel(bar)->text();
    QVERIFY(state.startsWith("Connected since"));
    bar.note("a word");
    QCOMPARE(detailLabel(bar)->text(), QString("a word"));
    QCOMPARE(stateLabel(bar)->text(), state);
}

void TestConnectionBar::aNoteEndsByItself()
{
    ConnectionBar bar("robot:1", {50, aDay}, nullptr);
    bar.showState(connectedState());
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
    bar.showState(connectedState());
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
    bar.showState(lostState("It fell over."));
    const QString state = stateLabel(bar)->text();
    stateLabel(bar)->setText("as it was yesterday");
    detailLabel(bar)->clear();
    TRY_COMPARE(stateLabel(bar)->text(), state);
    QVERIFY(detailLabel(bar)->text().contains("It fell over."));
}

void TestConnectionBar::aChangeOfStateEndsANote()
{
    ConnectionBar bar("robot:1", nullptr);
    bar.showState(connectedState());
    bar.note("a word");
    bar.showState(lostState("It fell over."));
    QVERIFY(detailLabel(bar)->text().contains("It fell over."));
    QVERIFY(stateLabel(bar)->text().startsWith("Connection lost since"));
}

void TestConnectionBar::textsOfARobotAreShownAsTheyAre()
{
    ConnectionBar bar("robot:1", nullptr);
    bar.showState(lostState("<b>bold</b>"));
    QCOMPARE(detailLabel(bar)->textFormat(), Qt::PlainText);
    QVERIFY(detailLabel(bar)->text().contains("<b>bold</b>"));
    QVERIFY(detailLabel(bar)->toolTip().contains("&lt;b&gt;"));
}

void TestConnectionBar::aLongReasonDoesNotWidenTheWindow()
{
    ConnectionBar bar("robot:1", nullptr);
    bar.showState(lostState("short"));
    const int width = bar.minimumSizeHint().width();
    bar.showState(lostState(QString(5000, 'x')));
    QCOMPARE(bar.minimumSizeHint().width(), width);
}

void TestConnectionBar::aLongReasonEndsInAnEllipsis()
{
    ConnectionBar bar("robot:1", nullptr);
    bar.resize(600, bar.sizeHint().height());
    bar.show();
    bar.showState(lostState(QString("so many words ").repeated(60)));
    const auto* label = bar.findChild<ElidedLabel*>("connectionDetail");
    QVERIFY2(label->shownText().startsWith("Trying again: so many"),
             qPrintable(label->shownText()));
    QVERIFY(label->shownText().endsWith(QChar(0x2026)));
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
    bar.showState(connectedState());
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
