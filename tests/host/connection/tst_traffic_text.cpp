// SPDX-License-Identifier: MIT
#include "connection/traffic_text.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <QLocale>
#include <QtTest>

using std::chrono::microseconds;
using std::chrono::milliseconds;

/// What goes over a link, in words.
class TestTrafficText : public GuardedTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void aFollowedPanelInAFewWords();
    void whatIsNotKnownIsLeftOut();
    void aLinkThatIsDownHasNoTraffic();
    void theToolTipTellsAll();
    void numbersHaveTheirUnits();
    void numbersAreInTheLocalesForm();
};

namespace {

ZoLinkStatus busyLink()
{
    ZoLinkStatus link;
    link.connected = true;
    link.roundTrip = microseconds(12345);
    link.answerAge = milliseconds(100);
    link.answersPerSecond = 10.2;
    link.bytesReceivedPerSecond = 12345;
    link.bytesSentPerSecond = 999;
    link.following = ZoLinkStatus::Following::Changes;
    return link;
}

/// The line of the tool tip that begins with `name`, without that.
QString line(const ZoLinkStatus& link, const QString& name)
{
    for (const QString& one : trafficDetail(link).split('\n')) {
        if (one.startsWith(name + ": "))
            return one.mid(name.size() + 2);
    }
    return {};
}

/// The whole process has this locale's numbers as long as it lives.
class NumbersOf
{
public:
    explicit NumbersOf(const QLocale& locale) { QLocale::setDefault(locale); }
    ~NumbersOf() { QLocale::setDefault(QLocale::c()); }
    NumbersOf(const NumbersOf&) = delete;
    NumbersOf& operator=(const NumbersOf&) = delete;
};

} // namespace

void TestTrafficText::initTestCase()
{
    GuardedTest::initTestCase();
    QLocale::setDefault(QLocale::c());
}

void TestTrafficText::aFollowedPanelInAFewWords()
{
    ZoLinkStatus link = busyLink();
    QCOMPARE(trafficBrief(link), QString("12 ms, 10 answers/s, changes only"));
    link.following = ZoLinkStatus::Following::Everything;
    QCOMPARE(trafficBrief(link), QString("12 ms, 10 answers/s, everything"));
}

void TestTrafficText::whatIsNotKnownIsLeftOut()
{
    ZoLinkStatus link;
    link.connected = true;
    QCOMPARE(trafficBrief(link), QString("0 answers/s"));
    QCOMPARE(line(link, "Round trip"), QString("none yet"));
    QCOMPARE(line(link, "Newest answer"), QString("none yet"));
    QCOMPARE(line(link, "Following"), QString("no values are followed"));
}

void TestTrafficText::aLinkThatIsDownHasNoTraffic()
{
    ZoLinkStatus link = busyLink();
    link.connected = false;
    QCOMPARE(trafficBrief(link), QString());
    QCOMPARE(trafficDetail(link), QString());
}

void TestTrafficText::theToolTipTellsAll()
{
    ZoLinkStatus link = busyLink();
    QCOMPARE(trafficDetail(link),
             QString("Round trip: 12 ms\nNewest answer: 100 ms ago\nAnswers: 10/s\n"
                     "Received: 12.3 kB/s\nSent: 999 bytes/s\n"
                     "Following: the robot tells what was written, and only that is read"));
    link.following = ZoLinkStatus::Following::Everything;
    QCOMPARE(line(link, "Following"), QString("every value is read each time"));
}

void TestTrafficText::numbersHaveTheirUnits()
{
    ZoLinkStatus link = busyLink();
    for (const auto& [time, text] :
         {std::pair(20, "0.1 ms"), {349, "0.3 ms"}, {9900, "9.9 ms"}, {1000000, "1000 ms"}}) {
        link.roundTrip = microseconds(time);
        QCOMPARE(line(link, "Round trip"), QString(text));
    }
    for (const auto& [rate, text] :
         {std::pair(0.0, "0/s"), {0.5, "0.5/s"}, {0.04, "0/s"}, {9.97, "10/s"}, {16.7, "17/s"}}) {
        link.answersPerSecond = rate;
        QCOMPARE(line(link, "Answers"), QString(text));
    }
    for (const auto& [age, text] : {std::pair(0, "0 ms ago"),
                                    {1200, "1.2 s ago"},
                                    {11400, "11 s ago"},
                                    {119000, "119 s ago"},
                                    {179000, "2 min ago"},
                                    {1000000, "16 min ago"},
                                    {100000000, "27 h ago"}}) {
        link.answerAge = milliseconds(age);
        QCOMPARE(line(link, "Newest answer"), QString(text));
    }
    link.bytesReceivedPerSecond = 3456789.4;
    QCOMPARE(line(link, "Received"), QString("3.5 MB/s"));
}

void TestTrafficText::numbersAreInTheLocalesForm()
{
    const NumbersOf german(QLocale(QLocale::German, QLocale::Germany));
    ZoLinkStatus link = busyLink();
    link.roundTrip = microseconds(1500);
    QCOMPARE(trafficBrief(link), QString("1,5 ms, 10 answers/s, changes only"));
    QCOMPARE(line(link, "Received"), QString("12,3 kB/s"));
}

REGISTER_TEST(TestTrafficText, QCoreApplication)
#include "tst_traffic_text.moc"
