// SPDX-License-Identifier: MIT
#include "connection/outage_bar.h"
#include "support/guarded_test.h"
#include "support/outage.h"
#include "support/patience.h"
#include "support/register_test.h"

#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

using Request = void (OutageBar::*)();
Q_DECLARE_METATYPE(Request)

namespace {

constexpr int aDay = 24 * 60 * 60 * 1000; ///< ms

/// A bar in a window, as users see it.
struct ShownBar
{
    explicit ShownBar(const OutageBar::Times& times = {10, aDay})
        : bar(new OutageBar("robot:1", times, &window))
    {
        window.addToolBar(bar);
        window.setCentralWidget(new QWidget);
        window.resize(800, 400);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window, patience));
    }
    ShownBar(const ShownBar&) = delete;
    ShownBar& operator=(const ShownBar&) = delete;

    /// Whether the text has the room that it needs at its width, and the window is as it was.
    bool isLaidOut() const
    {
        const auto* label = bar->findChild<QLabel*>("outageText");
        return label->isVisible() && label->height() == label->heightForWidth(label->width()) &&
               window.centralWidget()->geometry().top() == bar->geometry().bottom() + 1;
    }
    QString headline() const { return bar->findChild<QLabel*>("outageHeadline")->text(); }
    QString text() const { return bar->findChild<QLabel*>("outageText")->text(); }
    /// The names of the buttons that can be seen.
    QStringList buttons() const
    {
        QStringList names;
        for (const QPushButton* button : bar->findChildren<QPushButton*>())
            if (button->isVisible())
                names += button->objectName();
        return names;
    }
    void click(const QString& name) const
    {
        QTest::mouseClick(bar->findChild<QPushButton*>(name), Qt::LeftButton);
    }

    QMainWindow window;
    OutageBar* bar;
};

ConnectionState backWithStoppedPanel()
{
    ConnectionState state = connectedState();
    state.stopped = 1;
    return state;
}

} // namespace

/// The bar above the panels.
class TestOutageBar : public GuardedTest
{
    Q_OBJECT

private slots:
    void isAwayAsLongAsAllIsWell();
    void isThereAsLongAsTheRobotIsAway();
    void staysForAMomentAfterTheReturn();
    void aLinkThatComesAndGoesKeepsIt();
    void saysWhoSinceWhenWhyAndWhatIsDone();
    void offersWhatHelps();
    void aButtonAsksForWhatItSays_data();
    void aButtonAsksForWhatItSays();
    void staysAfterALossUntilItIsRead();
    void theTimeIsShownAnewNowAndThen();
    void textsOfARobotAreShownAsTheyAreAndCanBeCopied();
    void aLongReasonIsWrappedAndDoesNotWidenTheWindow();
    void nobodyElseShowsOrHidesIt();
    void canBeReadInEveryPalette();
};

void TestOutageBar::isAwayAsLongAsAllIsWell()
{
    ShownBar shown;
    QVERIFY(!shown.bar->isVisible());
    shown.bar->showState(connectedState());
    QVERIFY(!shown.bar->isVisible());
}

void TestOutageBar::isThereAsLongAsTheRobotIsAway()
{
    ShownBar shown;
    for (const ConnectionState& state :
         {interruptedState(), lostState(), refusedState(), closedState()}) {
        shown.bar->showState(state);
        QVERIFY(shown.bar->isVisible());
    }
    shown.bar->showState(connectedState());
    TRY_VERIFY(!shown.bar->isVisible());
}

void TestOutageBar::staysForAMomentAfterTheReturn()
{
    ShownBar shown;
    shown.bar->showState(interruptedState());
    shown.bar->showState(connectedState());
    QVERIFY(shown.bar->isVisible());
    QVERIFY(shown.headline().startsWith("Connected since "));
    QVERIFY(shown.buttons().isEmpty());
    TRY_VERIFY(!shown.bar->isVisible());
}

void TestOutageBar::aLinkThatComesAndGoesKeepsIt()
{
    ShownBar shown({aDay, aDay});
    shown.bar->showState(interruptedState());
    TRY_VERIFY(shown.isLaidOut());
    const QRect panels = shown.window.centralWidget()->geometry();
    for (int i = 0; i < 5; ++i) {
        shown.bar->showState(connectedState());
        QVERIFY(shown.bar->isVisible());
        shown.bar->showState(interruptedState());
        QVERIFY(shown.bar->isVisible());
    }
    QCoreApplication::processEvents();
    QCOMPARE(shown.window.centralWidget()->geometry(), panels);
}

void TestOutageBar::saysWhoSinceWhenWhyAndWhatIsDone()
{
    ShownBar shown;
    shown.bar->showState(interruptedState("robot:1 fell over"));
    QVERIFY(shown.headline().startsWith("Interrupted since "));
    QVERIFY(shown.headline().endsWith(" (robot:1)"));
    QVERIFY(shown.text().contains("robot:1 fell over"));
    QVERIFY(shown.text().contains("Nothing new comes in"));
    QVERIFY(shown.text().contains("tried again and again"));
}

void TestOutageBar::offersWhatHelps()
{
    ShownBar shown;
    shown.bar->showState(interruptedState());
    QCOMPARE(shown.buttons(), QStringList("outageDisconnect"));
    shown.bar->showState(lostState());
    QCOMPARE(shown.buttons(), QStringList("outageReconnect"));
    shown.bar->showState(closedState());
    QCOMPARE(shown.buttons(), QStringList("outageReconnect"));
    shown.bar->showState(refusedState());
    QCOMPARE(shown.buttons(), QStringList("connectAgain"));
    shown.bar->showState(backWithStoppedPanel());
    QCOMPARE(shown.buttons(), QStringList("outageDismiss"));
}

void TestOutageBar::aButtonAsksForWhatItSays_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<Request>("request");
    QTest::newRow("disconnect") << "outageDisconnect" << Request(&OutageBar::disconnectRequested);
    QTest::newRow("reconnect") << "outageReconnect" << Request(&OutageBar::reconnectRequested);
    QTest::newRow("connect again") << "connectAgain" << Request(&OutageBar::connectAgainRequested);
    QTest::newRow("dismiss") << "outageDismiss" << Request(&OutageBar::dismissed);
}

void TestOutageBar::aButtonAsksForWhatItSays()
{
    QFETCH(QString, button);
    QFETCH(Request, request);
    ShownBar shown;
    const QSignalSpy asked(shown.bar, request);
    for (const ConnectionState& state :
         {interruptedState(), lostState(), refusedState(), backWithStoppedPanel()}) {
        shown.bar->showState(state);
        if (shown.buttons().contains(button))
            shown.click(button);
    }
    QCOMPARE(asked.size(), 1);
}

void TestOutageBar::staysAfterALossUntilItIsRead()
{
    ShownBar shown({0, aDay});
    shown.bar->showState(lostState());
    shown.bar->showState(backWithStoppedPanel());
    QTimer others;
    QSignalSpy ticks(&others, &QTimer::timeout);
    others.start(1);
    TRY_VERIFY(ticks.size() > 20); // a farewell would be over
    QVERIFY(shown.bar->isVisible());
    QVERIFY(shown.text().contains("Start it again in each"));
    shown.bar->showState(connectedState());
    TRY_VERIFY(!shown.bar->isVisible());
}

void TestOutageBar::theTimeIsShownAnewNowAndThen()
{
    ShownBar shown({aDay, 10});
    shown.bar->showState(interruptedState());
    auto* label = shown.bar->findChild<QLabel*>("outageHeadline");
    const QString text = label->text();
    label->setText("as it was yesterday");
    TRY_COMPARE(label->text(), text);
}

void TestOutageBar::textsOfARobotAreShownAsTheyAreAndCanBeCopied()
{
    ShownBar shown;
    shown.bar->showState(interruptedState("<b>bold</b>"));
    const auto* label = shown.bar->findChild<QLabel*>("outageText");
    QCOMPARE(label->textFormat(), Qt::PlainText);
    QVERIFY(label->text().contains("<b>bold</b>"));
    QVERIFY(label->textInteractionFlags() & Qt::TextSelectableByMouse);
}

void TestOutageBar::aLongReasonIsWrappedAndDoesNotWidenTheWindow()
{
    ShownBar shown;
    shown.bar->showState(interruptedState("short"));
    TRY_VERIFY(shown.isLaidOut());
    const int height = shown.bar->height();
    const int width = shown.window.minimumSizeHint().width();
    shown.bar->showState(interruptedState(QString("so many words ").repeated(60)));
    TRY_VERIFY(shown.bar->height() > height);
    QCOMPARE(shown.window.minimumSizeHint().width(), width);
    QCOMPARE(shown.window.size(), QSize(800, 400));
    TRY_VERIFY(shown.isLaidOut());
    shown.window.resize(500, 400);
    TRY_VERIFY(shown.isLaidOut());
    QCOMPARE(shown.window.size(), QSize(500, 400));
    QVERIFY(shown.text().endsWith(QChar(0x2026)));
}

void TestOutageBar::nobodyElseShowsOrHidesIt()
{
    ShownBar shown({0, aDay});
    const QByteArray hidden = shown.window.saveState();
    shown.bar->showState(interruptedState());
    const QByteArray visible = shown.window.saveState();
    shown.window.restoreState(hidden);
    QVERIFY(shown.bar->isVisible());
    shown.bar->showState(connectedState());
    TRY_VERIFY(!shown.bar->isVisible());
    shown.window.restoreState(visible);
    QVERIFY(!shown.bar->isVisible());
    QVERIFY(!shown.bar->toggleViewAction()->isVisible());
}

/// Its text has the colour that belongs to its ground.
void TestOutageBar::canBeReadInEveryPalette()
{
    ShownBar shown;
    QPalette palette = shown.bar->palette();
    palette.setColor(QPalette::ToolTipBase, Qt::black);
    palette.setColor(QPalette::ToolTipText, Qt::white);
    shown.window.setPalette(palette);
    shown.bar->setPalette(palette);
    shown.bar->showState(interruptedState());
    QCoreApplication::processEvents();
    auto* label = shown.bar->findChild<QLabel*>("outageHeadline");
    const QImage image = shown.bar->grab(QRect(label->mapTo(shown.bar, QPoint()), label->size()))
                             .toImage()
                             .convertToFormat(QImage::Format_RGB32);
    QCOMPARE(image.pixelColor(0, 0), QColor(Qt::black));
    bool hasWhite = false;
    for (int x = 0; x < image.width(); ++x)
        for (int y = 0; y < image.height(); ++y)
            hasWhite = hasWhite || image.pixelColor(x, y).lightness() > 200;
    QVERIFY(hasWhite);
}

REGISTER_TEST(TestOutageBar, QApplication)
#include "tst_outage_bar.moc"
