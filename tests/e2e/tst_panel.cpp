// SPDX-License-Identifier: MIT
#include "session.h"
#include "support/following.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/password_file.h"
#include "support/patience.h"
#include "support/redis_server.h"
#include "support/register_test.h"
#include "support/watched_thread.h"
#include "windows/panel_dock.h"

#include <tarvek/tarvek_widget.h>

#include <QAbstractButton>
#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QListWidget>
#include <QScrollBar>
#include <QtTest>

#include <atomic>
#include <csignal>
#include <functional>
#include <unistd.h>

/// The real plug-in in real windows, with the simulated robot.
class TestPanel : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void startsWithAllKeys();
    void showsTheWholeTableAndAGraphAtFirst_data();
    void showsTheWholeTableAndAGraphAtFirst();
    void startsWithChosenKeys();
    void startsFromAConfigurationFile();
    void showsLiveValuesOfWatchedKeys();
    void graphsAKeyAndPauses();
    void readsFractionsInALocaleWithADecimalComma();
    void mergesASavedConfiguration();
    void keepsAnsweringWhileTheRobotHangs();
    void goesOnAfterTheRobotWasStartedAgain();
    void closesWhileItsStartUpDialogsAreOpen();
    void closesWhileFetching();
    void closesWhileTheRobotHangs();
    void followsTwoRobotsAtOnce();
    void carriesTenThousandKeys();

private:
    qint64 server() const { return fRobot->children().value(0); }
    MainWindow* window(const ZoBrokerOptions& options = following());
    TarvekWidget* openAll(const ZoBrokerOptions& options = following());
    void closeWhileAFetchWaits(TarvekWidget* panel, const std::function<void()>& whenAsked);
    static QString valueOf(TarvekWidget* panel, const QString& alias);
    static bool lives(TarvekWidget* panel, const QString& alias);

    QScopedPointer<RobotProgram> fRobot;
    QScopedPointer<Session> fSession;
    QScopedPointer<QTemporaryDir> fFolder;
};

namespace {

const QString liveKey = "Battery/Voltage";
constexpr int watchColumn = 1;
constexpr int graphColumn = 2;
constexpr int valueColumn = 4;

/// The longest time between two turns of the event loop.
class StallMeter
{
public:
    StallMeter()
    {
        QObject::connect(&fTimer, &QTimer::timeout,
                         [this] { fLongest = qMax(fLongest, fClock.restart()); });
        fClock.start();
        fTimer.start(5);
    }
    qint64 longest() const { return fLongest; }

private:
    QTimer fTimer;
    QElapsedTimer fClock;
    qint64 fLongest = 0;
};

} // namespace

void TestPanel::init()
{
    fFolder.reset(new QTemporaryDir);
    fRobot.reset(new RobotProgram);
    QVERIFY(fRobot->startAndWait());
    QSettings().clear();
    fSession.reset(new Session);
}

void TestPanel::cleanup()
{
    fSession.reset();
    fRobot.reset();
    GuardedTest::cleanup();
}

MainWindow* TestPanel::window(const ZoBrokerOptions& options)
{
    return fSession->connectTo(*fRobot, options);
}

TarvekWidget* TestPanel::openAll(const ZoBrokerOptions& options)
{
    MainWindow* shown = window(options);
    return shown ? fSession->open(shown, Session::fAllKeys) : nullptr;
}

QString TestPanel::valueOf(TarvekWidget* panel, const QString& alias)
{
    QTreeWidgetItem* row = rowOf(panel, alias);
    return row ? row->text(valueColumn) : QString();
}

/// Whether the shown value changes.
bool TestPanel::lives(TarvekWidget* panel, const QString& alias)
{
    const QString before = valueOf(panel, alias);
    return QTest::qWaitFor([&] { return valueOf(panel, alias) != before; }, patience);
}

/// Stops the robot's server, and asks the panel's window to close and calls `whenAsked` while the
/// user's thread waits for values. Returns when that wait is over.
void TestPanel::closeWhileAFetchWaits(TarvekWidget* panel, const std::function<void()>& whenAsked)
{
    ::kill(static_cast<pid_t>(server()), SIGSTOP);
    const std::atomic<pid_t> user{::gettid()};
    std::atomic<bool> isOver{false};
    bool hasWaited = false;
    WatchedThread closer([&] {
        hasWaited = comesToSleep(user, [&] {
            QThread::msleep(1);
            return isOver.load();
        });
        QMetaObject::invokeMethod(panel->window(), "close", Qt::QueuedConnection);
        whenAsked();
    });
    clickButton(*panel, "Refresh All");
    isOver = true;
    closer.join();
    QVERIFY(hasWaited);
}

void TestPanel::startsWithAllKeys()
{
    TarvekWidget* panel = openAll();
    QVERIFY(panel);
    QCOMPARE(static_cast<size_t>(tableOf(panel)->topLevelItemCount()),
             fRobot->memory().getDataListName().size());
    TRY_VERIFY(!valueOf(panel, liveKey).isEmpty());
    QVERIFY(panel->window()->windowTitle().startsWith("Tarvek Desktop (connected to 127.0.0.1)"));
}

void TestPanel::showsTheWholeTableAndAGraphAtFirst_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("scale 1") << QSize(1280, 760);
    QTest::newRow("scale 1.5") << QSize(853, 506);
    QTest::newRow("scale 2") << QSize(640, 380);
}

void TestPanel::showsTheWholeTableAndAGraphAtFirst()
{
    QFETCH(QSize, size);
    MainWindow* const shown = window();
    shown->resize(size);
    TarvekWidget* const panel = fSession->open(shown, Session::fAllKeys);
    TRY_VERIFY(shown->frontDock()->isArranged());
    QCOMPARE(shown->size(), size); // nothing in it needs more
    const QTreeWidget* const table = tableOf(panel);
    TRY_COMPARE(table->horizontalScrollBar()->maximum(), 0);
    for (int column = 0; column < table->columnCount(); ++column)
        QVERIFY2(table->columnWidth(column) >= 40, qPrintable(QString::number(column)));
    const QWidget* const graph = partOf(panel, "Graph");
    QVERIFY(graph->width() > 120 && graph->height() > 120);
    QVERIFY(panel->rect().contains(
        QRect(graph->mapTo(panel, QPoint(0, 0)), graph->size()))); // to its newest values
}

void TestPanel::startsWithChosenKeys()
{
    const QString file = fFolder->filePath("chosen.xml");
    TarvekWidget* panel =
        fSession->open(window(), Session::fNewFile, "StmListDialog", [file](QDialog& dialog) {
            auto* list = dialog.findChild<QListWidget*>();
            const auto found = list->findItems(liveKey, Qt::MatchExactly);
            QCOMPARE(found.size(), 1);
            found[0]->setCheckState(Qt::Checked);
            whenShown("QFileDialog", [file](QDialog& files) { chooseFile(files, file); });
            clickButton(dialog, "Ok");
        });
    QVERIFY(panel);
    QCOMPARE(tableOf(panel)->topLevelItemCount(), 1);
    QVERIFY(lives(panel, liveKey));
    QVERIFY(QFile::exists(file));
}

void TestPanel::startsFromAConfigurationFile()
{
    QFile file(fFolder->filePath("keys.xml"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<stm_viewer><stm_value name=\"Battery/Voltage\" alias=\"volts\" watch=\"1\" "
               "graph=\"0\"><color red=\"1\" green=\"2\" blue=\"3\"/></stm_value></stm_viewer>");
    file.close();
    TarvekWidget* panel =
        fSession->open(window(), Session::fOpenFile, "QFileDialog",
                       [&file](QDialog& files) { chooseFile(files, file.fileName()); });
    QVERIFY(panel);
    QVERIFY(lives(panel, "volts"));
}

void TestPanel::showsLiveValuesOfWatchedKeys()
{
    TarvekWidget* panel = openAll();
    TRY_VERIFY(!valueOf(panel, liveKey).isEmpty());
    clickBox(panel, liveKey, watchColumn);
    QCOMPARE(rowOf(panel, liveKey)->checkState(watchColumn), Qt::Checked);
    QVERIFY(lives(panel, liveKey));
}

void TestPanel::graphsAKeyAndPauses()
{
    TarvekWidget* panel = openAll();
    QWidget* graph = partOf(panel, "Graph");
    QVERIFY(graph);
    clickBox(panel, liveKey, graphColumn);
    QCOMPARE(rowOf(panel, liveKey)->checkState(watchColumn), Qt::Checked);
    const QImage first = graph->grab().toImage();
    QVERIFY(QTest::qWaitFor([&] { return graph->grab().toImage() != first; }, patience));
    QWidget* strip = partOf(panel, "GraphConfig");
    QVERIFY(strip);
    for (auto* button : strip->findChildren<QAbstractButton*>())
        if (button->isCheckable() && button->text().isEmpty())
            QTest::mouseClick(static_cast<QWidget*>(button), Qt::LeftButton);
    const QImage paused = graph->grab().toImage();
    // Several sampling steps of a running graph would show by then.
    QTimer ticker;
    QSignalSpy ticks(&ticker, &QTimer::timeout);
    ticker.start(40);
    TRY_VERIFY(ticks.size() > 8);
    QCOMPARE(graph->grab().toImage(), paused);
}

void TestPanel::readsFractionsInALocaleWithADecimalComma()
{
    QCOMPARE(QLocale().decimalPoint(), QChar(','));
    const RedisServer robot;
    robot.command({"SET", "Half", "0.5"});
    TarvekWidget* panel = fSession->open(
        fSession->connectTo(QString("127.0.0.1:%1").arg(robot.port())), Session::fAllKeys);
    clickBox(panel, "Half", graphColumn);
    // The automatic range around one value is that value and 10 to each side; switched to manual,
    // the box shows it.
    QWidget* strip = partOf(panel, "GraphConfig");
    const auto lowerEnd = [strip] {
        clickButton(*strip, "Autoscale");
        double lowest = 0;
        for (auto* box : strip->findChildren<QDoubleSpinBox*>())
            lowest = qMin(lowest, box->value());
        clickButton(*strip, "Autoscale");
        return lowest;
    };
    TRY_COMPARE(lowerEnd(), -9.5);
    TRY_COMPARE(valueOf(panel, "Half"), QString("0.5"));
}

void TestPanel::mergesASavedConfiguration()
{
    const QString file = fFolder->filePath("saved");
    TarvekWidget* panel = openAll();
    clickBox(panel, liveKey, watchColumn);
    whenShown("QFileDialog", [file](QDialog& files) { chooseFile(files, file); });
    clickButton(*panel, "Save");
    QVERIFY(QFile::exists(file + ".xml"));
    clickBox(panel, liveKey, watchColumn);
    QCOMPARE(rowOf(panel, liveKey)->checkState(watchColumn), Qt::Unchecked);
    const int rows = tableOf(panel)->topLevelItemCount();
    whenShown("QFileDialog", [file](QDialog& files) { chooseFile(files, file + ".xml"); });
    clickButton(*panel, "Open");
    QCOMPARE(tableOf(panel)->topLevelItemCount(), 2 * rows);
    const auto found = tableOf(panel)->findItems(liveKey, Qt::MatchExactly);
    QVERIFY(std::any_of(found.begin(), found.end(), [](QTreeWidgetItem* row) {
        return row->checkState(watchColumn) == Qt::Checked;
    }));
}

void TestPanel::keepsAnsweringWhileTheRobotHangs()
{
    TarvekWidget* panel =
        openAll(following(ZoBrokerOptions())); // whose deadlines are what is tried
    QVERIFY(panel);
    auto* shown = static_cast<MainWindow*>(panel->window());
    clickBox(panel, liveKey, watchColumn);
    QVERIFY(lives(panel, liveKey));
    StallMeter meter;
    QElapsedTimer outage;
    outage.start();
    ::kill(static_cast<pid_t>(server()), SIGSTOP);
    TRY_VERIFY(!shown->monitor().state().connected);
    TRY_VERIFY(shown->monitor().state().since.msecsTo(QDateTime::currentDateTime()) > 3000);
    const qint64 lasted = outage.elapsed();
    ::kill(static_cast<pid_t>(server()), SIGCONT);
    // No call waits for more than a moment, but the machine may be busy.
    qInfo("longest stall: %lld of %lld ms", meter.longest(), lasted);
    QVERIFY(meter.longest() < lasted / 3);
    TRY_VERIFY(shown->monitor().state().connected);
}

void TestPanel::goesOnAfterTheRobotWasStartedAgain()
{
    const QString port = fRobot->address().section(':', 1);
    const PasswordFile password("look-only"); // the same for both
    const QStringList arguments = {"--port", port, "--password-file", password.fileName()};
    fRobot->signal(SIGTERM);
    QCOMPARE(fRobot->waitForExit(), 0);
    fRobot.reset(new RobotProgram(arguments));
    QVERIFY(fRobot->startAndWait());
    MainWindow* shown = fSession->connectTo(fRobot->address(), "look-only");
    TarvekWidget* panel = fSession->open(shown, Session::fAllKeys);
    clickBox(panel, liveKey, watchColumn);
    QVERIFY(lives(panel, liveKey));
    fRobot->signal(SIGTERM);
    QCOMPARE(fRobot->waitForExit(), 0);
    TRY_VERIFY(!shown->monitor().state().connected);
    fRobot.reset(new RobotProgram(arguments));
    QVERIFY(fRobot->startAndWait());
    TRY_VERIFY(shown->monitor().state().connected);
    QVERIFY(lives(panel, liveKey));
}

void TestPanel::closesWhileItsStartUpDialogsAreOpen()
{
    const QPointer<MainWindow> shown = window();
    TarvekWidget* panel = fSession->open(shown, Session::fNewFile, "StmListDialog",
                                         [shown](QDialog&) { shown->close(); });
    QVERIFY(!panel || !panel->isVisible());
    TRY_VERIFY(!shown);
}

void TestPanel::closesWhileFetching()
{
    TarvekWidget* panel = openAll(patientOptions());
    QVERIFY(panel);
    const QPointer<QWidget> shown = panel->window();
    closeWhileAFetchWaits(panel, [this] { ::kill(static_cast<pid_t>(server()), SIGCONT); });
    TRY_VERIFY(!shown);
}

void TestPanel::closesWhileTheRobotHangs()
{
    TarvekWidget* panel = openAll(ZoBrokerOptions()); // whose deadlines end the fetch
    QVERIFY(panel);
    const QPointer<QWidget> shown = panel->window();
    closeWhileAFetchWaits(panel, [] {});
    TRY_VERIFY(!shown); // though the robot does not answer even now
    ::kill(static_cast<pid_t>(server()), SIGCONT);
}

void TestPanel::followsTwoRobotsAtOnce()
{
    RobotProgram other({"--seed", "7"});
    QVERIFY(other.startAndWait());
    TarvekWidget* first = openAll();
    TarvekWidget* second = fSession->open(fSession->connectTo(other), Session::fAllKeys);
    QVERIFY(first && second && first->window() != second->window());
    clickBox(first, liveKey, watchColumn);
    clickBox(second, liveKey, watchColumn);
    QVERIFY(lives(first, liveKey));
    QVERIFY(lives(second, liveKey));
    const QPointer<QWidget> closed = second->window();
    closed->close();
    TRY_VERIFY(!closed);
    QVERIFY(lives(first, liveKey));
}

void TestPanel::carriesTenThousandKeys()
{
    fRobot.reset(new RobotProgram({"--keys", "10000", "--rate", "10"}));
    QVERIFY(fRobot->startAndWait());
    TarvekWidget* panel = openAll();
    QVERIFY(panel);
    QCOMPARE(tableOf(panel)->topLevelItemCount(), 10000);
    clickButton(*panel, "Watch All");
    QVERIFY(lives(panel, liveKey));
}

REGISTER_TEST(TestPanel, HostApplication)
#include "tst_panel.moc"
