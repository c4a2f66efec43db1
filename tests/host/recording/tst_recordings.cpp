// SPDX-License-Identifier: MIT
#include "connection/ssh_relay.h"
#include "desktop.h"
#include "recording/recording.h"
#include "recording/recording_bar.h"
#include "recording/recordings.h"
#include "support/fake_keyring.h"
#include "support/fake_ssh.h"
#include "support/files.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/program.h"
#include "support/register_test.h"
#include "support/window_bench.h"

#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/file.h>

#include <csignal>

namespace {

/// A recorder has the lock of its file for as long as it runs.
bool isBeingRecorded(const QString& file)
{
    QFile opened(file);
    return opened.open(QIODevice::ReadOnly) && ::flock(opened.handle(), LOCK_EX | LOCK_NB) != 0;
}

} // namespace

/// Recordings that a user begins in a window, by the real recorder, of a real server.
class TestRecordings : public GuardedTest, private WindowBench
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void stateAndSizeAreInSight();
    void stopEndsItWithAWholeFile();
    void severalRunAtOnceUpToALimit();
    void aPanelIsNoneOfItsBusiness();
    void aRobotThatGoesAndComesBackIsWaitedFor();
    void disconnectingTheWindowDoesNotEndIt();
    void theConfigurationOfAPanelIsRecorded();
    void aRobotWithUserPasswordAndEncryptionIsRecorded();
    void aWrongPasswordIsTold();
    void aPasswordThatNoRecorderTakesIsTold();
    void aMissingRecorderIsTold();
    void aRecorderThatCannotRunIsTold();
    void aFolderThatIsNotThereIsTold();
    void aFileThatIsNoRecordingIsTold();
    void aFullDiskIsTold();
    void aRecorderThatDiesIsTold();
    void aRobotBehindAnotherHostIsRecordedTheSameWay();
    void closingTheWindowAsksFirst();
    void aWindowStaysOpenToTellAFailure();
    void aRecordingThatIsBegunMeanwhileKeepsTheWindowOpen();
    void theWindowsEndEndsIt();
    void quittingAsksAndEndingDoesNot();
    void quittingAsksBeforeTheFirstWindowCloses();

private:
    void writeRecorder(const QByteArray& script);
    void record(const QString& file, const QString& keys = "a");
    QString path(const QString& name = "a.csv") const { return fFolder->filePath(name); }
    QStringList lines(const QString& name = "a.csv") const;
    QList<RecordingRow*> rows() const { return fWindow->findChildren<RecordingRow*>(); }
    QString rowText() const;
    void stop() const;
    bool hasNone() const { return rows().isEmpty(); }
    QString boxText() const { return shownBox() ? shownBox()->text() : QString(); }
    QString noteText() const { return fWindow->findChild<QLabel*>("connectionDetail")->text(); }
    void answer(const QString& button) const;
    void useRobot(const RedisServer::Options& options, const ConnectionSettings& settings);

    const QByteArray fPathBefore = qgetenv("PATH");
    QScopedPointer<QTemporaryDir> fFolder;
};

void TestRecordings::init()
{
    fFolder.reset(new QTemporaryDir);
    qputenv("PATH", QFile::encodeName(fFolder->path()) + ':' +
                        QFile::encodeName(QFileInfo(RECORDER).path()) + ':' + fPathBefore);
    setUp();
    useRobot({}, {});
}

void TestRecordings::cleanup()
{
    for (QMessageBox* box : shownBoxes())
        delete box;
    tearDown();
    qputenv("PATH", fPathBefore);
    GuardedTest::cleanup();
}

/// In place of the real one.
void TestRecordings::writeRecorder(const QByteArray& script)
{
    QFile file(path("zo-record"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("#!/bin/sh\n" + script + '\n') > 0);
    QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

/// As a user does it.
void TestRecordings::record(const QString& file, const QString& keys)
{
    action("Record...")->trigger();
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    QVERIFY(dialog && dialog->inherits("RecordingDialog"));
    dialog->findChild<QRadioButton*>("byKeys")->click();
    dialog->findChild<QPlainTextEdit*>("keys")->setPlainText(keys);
    dialog->findChild<QSpinBox*>("period")->setValue(50);
    dialog->findChild<QLineEdit*>("file")->setText(file);
    QTest::mouseClick(dialog->findChild<QPushButton*>("record"), Qt::LeftButton);
}

QStringList TestRecordings::lines(const QString& name) const
{
    return QString::fromUtf8(bytesOf(path(name))).split("\r\n", Qt::SkipEmptyParts);
}

QString TestRecordings::rowText() const
{
    return hasNone() ? QString() : rows()[0]->findChild<QLabel*>("recordingText")->text();
}

void TestRecordings::stop() const
{
    QTest::mouseClick(rows()[0]->findChild<QPushButton*>("recordingStop"), Qt::LeftButton);
}

void TestRecordings::answer(const QString& button) const
{
    QMessageBox* box = shownBox();
    QVERIFY(box);
    for (QAbstractButton* each : box->buttons())
        if (each->text().remove('&') == button)
            QTest::mouseClick(each, Qt::LeftButton);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void TestRecordings::useRobot(const RedisServer::Options& options,
                              const ConnectionSettings& settings)
{
    fRobot.reset(new RedisServer(options));
    fRobot->command({"MSET", "a", "0.5", "b", "walking"});
    ConnectionSettings full = settings;
    full.timeout = 20000; // which a slow machine keeps
    full.address.port = fRobot->port();
    if (full.tls)
        full.caFile = QString::fromStdString(fRobot->caFile());
    fWindow.reset();
    fWindow.reset(new MainWindow(
        {*fPlugins, *fErrors, "/some/where/"}, full,
        ZoBroker::create("test", full.address.host, full.address.port, full.brokerOptions())));
    fWindow->show();
}

void TestRecordings::stateAndSizeAreInSight()
{
    auto* bar = fWindow->findChild<RecordingBar*>();
    QVERIFY(!bar->isVisible());
    record(path());
    QVERIFY(bar->isVisible() && rows()[0]->isVisible());
    const QRegularExpression form(
        R"(^a\.csv: [1-9][0-9]* rows, [0-9.]+ k?B, [0-9.]+ [MGT]B free$)");
    TRY_VERIFY(form.match(rowText()).hasMatch());
    QVERIFY(rows()[0]->findChild<QLabel*>("recordingText")->toolTip().contains(path()));
    const QString first = rowText();
    TRY_VERIFY(rowText() != first);
    // An arrangement that comes back does not take it out of sight.
    const QByteArray state = fWindow->saveState();
    stop();
    TRY_VERIFY(hasNone());
    QVERIFY(!bar->isVisible());
    fWindow->restoreState(state);
    QVERIFY(!bar->isVisible());
}

void TestRecordings::stopEndsItWithAWholeFile()
{
    record(path());
    TRY_VERIFY(lines().size() > 3);
    stop();
    QVERIFY(rowText().contains("is being ended"));
    QVERIFY(!rows()[0]->findChild<QPushButton*>("recordingStop")->isEnabled());
    TRY_VERIFY(hasNone());
    QCOMPARE(boxText(), QString());
    QVERIFY2(noteText().contains("Recorded " + path() + ": "), qPrintable(noteText()));
    QVERIFY(bytesOf(path()).endsWith(",0.5\r\n"));
}

void TestRecordings::severalRunAtOnceUpToALimit()
{
    for (int i = 0; i < Recordings::fMost; ++i)
        record(path(QString::number(i) + ".csv"), i % 2 == 0 ? "a" : "b");
    QCOMPARE(rows().size(), Recordings::fMost);
    action("Record...")->trigger();
    QVERIFY2(boxText().contains("8 recordings are running"), qPrintable(boxText()));
    clickOk(shownBox());
    TRY_VERIFY(lines("0.csv").value(2).endsWith(",0.5"));
    TRY_VERIFY(lines("7.csv").value(2).endsWith(",\"\"\"walking\"\"\""));
    stop();
    TRY_COMPARE(rows().size(), Recordings::fMost - 1);
    QVERIFY2(rowText().startsWith("1.csv"), qPrintable(rowText()));
}

void TestRecordings::aPanelIsNoneOfItsBusiness()
{
    openProbe();
    record(path());
    TRY_VERIFY(lines().size() > 2);
    docks()[0]->close();
    TRY_VERIFY(docks().isEmpty());
    const int before = lines().size();
    TRY_VERIFY(lines().size() > before + 2);
    QCOMPARE(rows().size(), 1);
}

void TestRecordings::aRobotThatGoesAndComesBackIsWaitedFor()
{
    record(path());
    TRY_VERIFY(lines().size() > 2);
    fRobot->kill();
    TRY_VERIFY(rowText().contains("waits for the robot"));
    fRobot->restart();
    fRobot->command({"SET", "a", "7"});
    TRY_VERIFY(lines().last().endsWith(",7"));
    TRY_VERIFY(rowText().contains("polls missed") && !rowText().contains("waits"));
    QCOMPARE(boxText(), QString());
}

void TestRecordings::disconnectingTheWindowDoesNotEndIt()
{
    record(path());
    TRY_VERIFY(lines().size() > 2);
    action("Disconnect")->trigger();
    const int before = lines().size();
    TRY_VERIFY(lines().size() > before + 2);
}

void TestRecordings::theConfigurationOfAPanelIsRecorded()
{
    writeBytes(path("c.xml"), "<stm_viewer><stm_value name='b' alias='Mode' watch='1' graph='0'/>"
                              "<stm_value name='a' alias='a' watch='0' graph='0'/></stm_viewer>");
    RecordingPlan plan;
    plan.configuration = path("c.xml");
    plan.output = path();
    fWindow->findChild<Recordings*>()->start(fWindow->settings(), plan);
    TRY_VERIFY(lines().size() > 1);
    QCOMPARE(lines()[0], QString("time,Mode"));
}

void TestRecordings::aRobotWithUserPasswordAndEncryptionIsRecorded()
{
    RedisServer::Options options;
    options.tls = true;
    options.users = {"alice on >open-sesame ~* +@all"};
    options.defaultPassword = "another";
    ConnectionSettings settings;
    settings.tls = true;
    settings.user = "alice";
    settings.password = "open-sesame";
    useRobot(options, settings);
    record(path());
    TRY_VERIFY(lines().size() > 2);
    QCOMPARE(boxText(), QString());
}

void TestRecordings::aWrongPasswordIsTold()
{
    RedisServer::Options options;
    options.defaultPassword = "right";
    ConnectionSettings settings;
    settings.password = "right";
    useRobot(options, settings);
    settings.address.port = fRobot->port();
    settings.password = "wrong";
    RecordingPlan plan;
    plan.what = RecordingPlan::What::All;
    plan.output = path();
    fWindow->findChild<Recordings*>()->start(settings, plan);
    TRY_VERIFY(hasNone() && shownBox());
    QVERIFY2(boxText().contains("WRONGPASS"), qPrintable(boxText()));
    QVERIFY(!boxText().contains("wrong\n"));
    QVERIFY(!QFile::exists(path()));
}

void TestRecordings::aPasswordThatNoRecorderTakesIsTold()
{
    for (const char* password : {"open\nsesame", "open sesame\r"}) {
        ConnectionSettings settings = fWindow->settings();
        settings.password = password;
        fWindow->findChild<Recordings*>()->ask(settings);
        QVERIFY2(boxText().contains("has a line break"), qPrintable(boxText()));
        QVERIFY(!boxText().contains("sesame"));
        QCOMPARE(QApplication::activeModalWidget(), shownBox());
        clickOk(shownBox());
    }
}

void TestRecordings::aMissingRecorderIsTold()
{
    qputenv("PATH", QFile::encodeName(path("nowhere")));
    action("Record...")->trigger();
    QVERIFY2(boxText().contains("Install the package zo-record"), qPrintable(boxText()));
    QVERIFY(shownBox()->textInteractionFlags() & Qt::TextSelectableByMouse);
}

void TestRecordings::aRecorderThatCannotRunIsTold()
{
    QFile file(path("zo-record"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("#!/no/such/shell\n") > 0);
    QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    file.close();
    ConnectionSettings settings = fWindow->settings();
    settings.password = "secret"; // for which nobody is there
    RecordingPlan plan;
    plan.output = path();
    fWindow->findChild<Recordings*>()->start(settings, plan);
    TRY_VERIFY(hasNone() && shownBox());
    QVERIFY2(boxText().contains(path("zo-record")) && boxText().contains("cannot be started"),
             qPrintable(boxText()));
}

void TestRecordings::aFolderThatIsNotThereIsTold()
{
    record(path("no/such/folder.csv"));
    TRY_VERIFY(hasNone() && shownBox());
    QVERIFY2(boxText().contains("cannot record into the file '" + path("no/such/folder.csv")) &&
                 boxText().contains("exit status 1") && !boxText().contains("zo record:"),
             qPrintable(boxText()));
}

void TestRecordings::aFileThatIsNoRecordingIsTold()
{
    writeBytes(path(), "dear diary\n");
    record(path());
    answer("Go on behind it");
    TRY_VERIFY(hasNone() && shownBox());
    QVERIFY2(boxText().contains("is no recording of these columns"), qPrintable(boxText()));
    QCOMPARE(bytesOf(path()), QByteArray("dear diary\n"));
}

void TestRecordings::aFullDiskIsTold()
{
    fRobot->command({"SET", "a", std::string(20000, 'x')});
    // What a build that counts lines writes at the end has to fit, too.
    writeRecorder("ulimit -f 512; exec '" RECORDER "' \"$@\"");
    record(path());
    TRY_VERIFY(hasNone() && shownBox());
    QVERIFY2(boxText().contains("cannot write the file '" + path()) &&
                 boxText().contains("it holds whole rows until"),
             qPrintable(boxText()));
    QVERIFY(bytesOf(path()).endsWith("\r\n"));
}

void TestRecordings::aRecorderThatDiesIsTold()
{
    writeRecorder("echo 'zo record: <b>odd</b>' >&2; kill -KILL $$");
    record(path());
    TRY_VERIFY(hasNone() && shownBox());
    QVERIFY2(boxText().contains("was killed, or crashed") && boxText().contains("<b>odd</b>"),
             qPrintable(boxText()));
    QCOMPARE(shownBox()->textFormat(), Qt::PlainText);
}

void TestRecordings::aRobotBehindAnotherHostIsRecordedTheSameWay()
{
    const FakeSsh ssh;
    ConnectionSettings settings = fWindow->settings();
    settings.address = ZoAddress::fromText("arm-7.invalid:" + std::to_string(fRobot->port()));
    settings.jumpHost = "gate";
    settings.relay = std::make_shared<SshRelay>("gate", settings.address);
    RecordingPlan plan;
    plan.what = RecordingPlan::What::All;
    plan.output = path();
    fWindow->findChild<Recordings*>()->start(settings, plan);
    settings.relay.reset(); // the window may have another one by now
    TRY_VERIFY(lines().size() > 1);
    QVERIFY2(ssh.starts().last().endsWith("gate"), qPrintable(ssh.starts().last()));
    QVERIFY(!ssh.starts().last().contains("BatchMode")); // it may ask the user
}

void TestRecordings::closingTheWindowAsksFirst()
{
    record(path());
    TRY_VERIFY(lines().size() > 2);
    fWindow->close();
    QVERIFY2(boxText().contains("1 recording(s)"), qPrintable(boxText()));
    QVERIFY(!fWindow->close());
    QCOMPARE(shownBoxes().size(), 1); // not one more
    answer("Cancel");
    QVERIFY(fWindow->isVisible() && !shownBox());
    const int before = lines().size();
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

void TestRecordings::aWindowStaysOpenToTellAFailure()
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

void TestRecordings::aRecordingThatIsBegunMeanwhileKeepsTheWindowOpen()
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

void TestRecordings::theWindowsEndEndsIt()
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

void TestRecordings::quittingAsksAndEndingDoesNot()
{
    CommandLine line;
    line.settings = fWindow->settings();
    line.connectAtOnce = true;
    Desktop desktop(line, *fErrors,
                    std::make_unique<FakeKeyring>(std::make_shared<FakeKeyring::Content>()));
    const QSignalSpy finished(&desktop, &Desktop::finished);
    desktop.start();
    TRY_COMPARE(desktop.windows().size(), 1);
    RecordingPlan plan;
    plan.what = RecordingPlan::What::All;
    plan.period = 50;
    plan.output = path();
    MainWindow* const window = desktop.windows()[0];
    window->findChild<Recordings*>()->start(line.settings, plan);
    TRY_VERIFY(lines().size() > 2);
    desktop.closeAll();
    QVERIFY(shownBox() && window->isVisible());
    desktop.endAll();
    QVERIFY(!shownBox() && desktop.windows().isEmpty());
    TRY_COMPARE(finished.size(), 1);
    QVERIFY(bytesOf(path()).endsWith("\r\n"));
    QVERIFY(!isBeingRecorded(path()));
}

void TestRecordings::quittingAsksBeforeTheFirstWindowCloses()
{
    CommandLine line;
    line.settings = fWindow->settings();
    line.connectAtOnce = true;
    Desktop desktop(line, *fErrors,
                    std::make_unique<FakeKeyring>(std::make_shared<FakeKeyring::Content>()));
    const QSignalSpy finished(&desktop, &Desktop::finished);
    desktop.start();
    TRY_COMPARE(desktop.windows().size(), 1);
    desktop.connectTo(line.settings);
    TRY_COMPARE(desktop.windows().size(), 2);
    RecordingPlan plan;
    plan.what = RecordingPlan::What::All;
    plan.period = 50;
    plan.output = path();
    desktop.windows()[1]->findChild<Recordings*>()->start(line.settings, plan);
    TRY_VERIFY(lines().size() > 2);
    for (MainWindow* asked : desktop.windows()) {
        emit asked->quitRequested();
        QVERIFY2(boxText().startsWith("1 recording(s) are running."), qPrintable(boxText()));
        answer("Cancel");
        QVERIFY(!shownBox());
        QCOMPARE(desktop.windows().size(), 2);
    }
    const int before = lines().size();
    TRY_VERIFY(lines().size() > before + 2);
    emit desktop.windows()[0]->quitRequested();
    answer("End recordings and quit");
    TRY_COMPARE(finished.size(), 1);
    QVERIFY(desktop.windows().isEmpty());
    QVERIFY(bytesOf(path()).endsWith("\r\n"));
}

REGISTER_TEST(TestRecordings, HostApplication)
#include "tst_recordings.moc"
