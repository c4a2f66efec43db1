// SPDX-License-Identifier: MIT
#include "desktop.h"
#include "support/fake_keyring.h"
#include "support/guarded_test.h"
#include "support/recordings_bench.h"
#include "support/register_test.h"

#include <QSignalSpy>
#include <QtTest>

#include <memory>
#include <sys/file.h>

namespace {

/// A recorder has the lock of its file for as long as it runs.
bool isBeingRecorded(const QString& file)
{
    QFile opened(file);
    return opened.open(QIODevice::ReadOnly) && ::flock(opened.handle(), LOCK_EX | LOCK_NB) != 0;
}

} // namespace

/// The end of windows and of the program while they record.
class TestRecordingEnds : public GuardedTest, private RecordingsBench
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup()
    {
        tearDown();
        GuardedTest::cleanup();
    }
    void closingTheWindowAsksFirst();
    void aWindowStaysOpenToTellAFailure();
    void aRecordingThatIsBegunMeanwhileKeepsTheWindowOpen();
    void theWindowsEndEndsIt();
    void quittingAsksAndEndingDoesNot();
    void quittingAsksBeforeTheFirstWindowCloses();

private:
    std::unique_ptr<Desktop> desktopOfRobot();
    void recordAll(MainWindow& window) const;
};

/// With a window of the robot that is recorded here.
std::unique_ptr<Desktop> TestRecordingEnds::desktopOfRobot()
{
    CommandLine line;
    line.settings = fWindow->settings();
    line.connectAtOnce = true;
    auto keyring = std::make_unique<FakeKeyring>(std::make_shared<FakeKeyring::Content>());
    auto desktop = std::make_unique<Desktop>(line, *fErrors, std::move(keyring));
    desktop->start();
    [&] { TRY_COMPARE(desktop->windows().size(), 1); }();
    return desktop;
}

void TestRecordingEnds::recordAll(MainWindow& window) const
{
    RecordingPlan plan = planOfAll();
    plan.period = 50;
    window.findChild<Recordings*>()->start(window.settings(), plan);
}

void TestRecordingEnds::closingTheWindowAsksFirst()
{
    record(path());
    TRY_VERIFY(lines().size() > 2);
    fWindow->close();
    QVERIFY2(boxText().contains("1 recording(s)"), qPrintable(boxText()));
    QVERIFY(!fWindow->close());
    QCOMPARE(shownBoxes().size(), 1); // not one more
    answer("Cancel");
    QVERIFY(fWindow->isVisible() && !shownBox());
    const auto before = lines().size();
    TRY_VERIFY(lines().size() > before + 2);
    fWindow->close();
    answer("End recordings and close");
    QVERIFY(fWindow->isVisible()); // until the last row is on the disk
    QVERIFY(!fWindow->close());
    QVERIFY(!shownBox());
    TRY_VERIFY(!fWindow->isVisible());
    QVERIFY(hasNone());
    QVERIFY(bytesOf(path()).endsWith(",0.5\r\n"));
}

void TestRecordingEnds::aWindowStaysOpenToTellAFailure()
{
    writeRecorder("trap 'echo zo record: the disk is torn >&2; exit 1' TERM; echo ready >\"" +
                  QFile::encodeName(path("ready")) + "\"; while :; do sleep 0.05; done");
    record(path());
    TRY_VERIFY(QFile::exists(path("ready")));
    fWindow->close();
    answer("End recordings and close");
    TRY_VERIFY(hasNone() && shownBox());
    QVERIFY2(boxText().contains("the disk is torn"), qPrintable(boxText()));
    QVERIFY(fWindow->isVisible());
    QVERIFY(fWindow->close());
}

void TestRecordingEnds::aRecordingThatIsBegunMeanwhileKeepsTheWindowOpen()
{
    const auto quoted = [&](const char* name) { return '"' + QFile::encodeName(path(name)) + '"'; };
    writeRecorder("trap : TERM; echo >" + quoted("ready") + "; until [ -e " + quoted("done") +
                  " ]; do sleep 0.05; done");
    record(path());
    TRY_VERIFY(QFile::exists(path("ready")));
    fWindow->close();
    answer("End recordings and close");
    record(path("b.csv"));
    QCOMPARE(rows().size(), 2);
    writeBytes(path("done"), "");
    TRY_VERIFY(hasNone());
    QVERIFY(fWindow->isVisible());
}

void TestRecordingEnds::theWindowsEndEndsIt()
{
    record(path());
    record(path("b.csv"), "b");
    TRY_VERIFY(lines().size() > 2 && lines("b.csv").size() > 2);
    QVERIFY(isBeingRecorded(path()) && isBeingRecorded(path("b.csv")));
    fWindow.reset();
    for (const char* file : {"a.csv", "b.csv"}) {
        QVERIFY(bytesOf(path(file)).endsWith("\r\n"));
        QVERIFY(!isBeingRecorded(path(file)));
    }
}

void TestRecordingEnds::quittingAsksAndEndingDoesNot()
{
    const auto desktop = desktopOfRobot();
    const QSignalSpy finished(desktop.get(), &Desktop::finished);
    MainWindow* const window = desktop->windows()[0];
    recordAll(*window);
    TRY_VERIFY(lines().size() > 2);
    desktop->closeAll();
    QVERIFY(shownBox() && window->isVisible());
    desktop->endAll();
    QVERIFY(!shownBox() && desktop->windows().isEmpty());
    TRY_COMPARE(finished.size(), 1);
    QVERIFY(bytesOf(path()).endsWith("\r\n"));
    QVERIFY(!isBeingRecorded(path()));
}

void TestRecordingEnds::quittingAsksBeforeTheFirstWindowCloses()
{
    const auto desktop = desktopOfRobot();
    const QSignalSpy finished(desktop.get(), &Desktop::finished);
    desktop->connectTo(fWindow->settings());
    TRY_COMPARE(desktop->windows().size(), 2);
    recordAll(*desktop->windows()[1]);
    TRY_VERIFY(lines().size() > 2);
    for (MainWindow* asked : desktop->windows()) {
        emit asked->quitRequested();
        QVERIFY2(boxText().startsWith("1 recording(s) are running."), qPrintable(boxText()));
        answer("Cancel");
        QVERIFY(!shownBox());
        QCOMPARE(desktop->windows().size(), 2);
    }
    const auto before = lines().size();
    TRY_VERIFY(lines().size() > before + 2);
    emit desktop->windows()[0]->quitRequested();
    answer("End recordings and quit");
    TRY_COMPARE(finished.size(), 1);
    QVERIFY(desktop->windows().isEmpty());
    QVERIFY(bytesOf(path()).endsWith("\r\n"));
}

REGISTER_TEST(TestRecordingEnds, HostApplication)
#include "tst_recording_ends.moc"
