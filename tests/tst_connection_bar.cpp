#include "connection_bar.h"
#include "support/guarded_test.h"

#include <QLabel>
#include <QtTest>

/// What a window's status bar says about the connection.
class TestConnectionBar : public GuardedTest
{
    Q_OBJECT

private slots:
    void saysSinceWhen();
    void saysTheDateOfATimeOfAnotherDay();
    void saysWhyTheRobotIsLost();
    void saysWhatToDoWhenTheRobotIsBack();
    void aNoteHidesTheSentenceButNeverTheState();
    void aChangeOfStateEndsANote();
    void textsOfARobotAreShownAsTheyAre();
    void aLongReasonDoesNotWidenTheWindow();
};

namespace {

const QDateTime noon(QDate(2026, 11, 20), QTime(12, 0, 0));

ConnectionState up()
{
    return {true, false, noon, {}};
}

ConnectionState down(const QString& cause)
{
    return {false, true, noon, cause};
}

QLabel* stateLabel(const ConnectionBar& bar)
{
    return bar.findChild<QLabel*>("connectionState");
}

QLabel* detailLabel(const ConnectionBar& bar)
{
    return bar.findChild<QLabel*>("connectionDetail");
}

} // namespace

void TestConnectionBar::saysSinceWhen()
{
    QCOMPARE(connection_text::brief(up(), noon.addSecs(60)), QString("Connected since 12:00:00"));
    QCOMPARE(connection_text::brief(down("x"), noon.addSecs(60)),
             QString("Connection lost since 12:00:00"));
    QCOMPARE(connection_text::detail(up(), "robot:1"), QString("robot:1"));
}

void TestConnectionBar::saysTheDateOfATimeOfAnotherDay()
{
    QCOMPARE(connection_text::brief(up(), noon.addDays(1)),
             QString("Connected since 2026-11-20 12:00:00"));
}

void TestConnectionBar::saysWhyTheRobotIsLost()
{
    const QString text = connection_text::detail(down("robot:1 fell over"), "robot:1");
    QVERIFY(text.contains("robot:1 fell over"));
    QVERIFY(text.contains("Trying again"));
}

void TestConnectionBar::saysWhatToDoWhenTheRobotIsBack()
{
    const QString text = connection_text::detail({true, true, noon, {}}, "robot:1");
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

QTEST_MAIN(TestConnectionBar)
#include "tst_connection_bar.moc"
