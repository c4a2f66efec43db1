// SPDX-License-Identifier: MIT
#include "connection/ssh_relay.h"
#include "recording/recording_bar.h"
#include "support/fake_ssh.h"
#include "support/guarded_test.h"
#include "support/recordings_bench.h"
#include "support/register_test.h"

#include <QRegularExpression>
#include <QtTest>

/// Recordings that a user begins in a window, by the real recorder, of a real server.
class TestRecordings : public GuardedTest, private RecordingsBench
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup()
    {
        tearDown();
        GuardedTest::cleanup();
    }
    void stateAndSizeAreInSight();
    void stopEndsItWithAWholeFile();
    void severalRunAtOnceUpToALimit();
    void aPanelIsNoneOfItsBusiness();
    void aRobotThatGoesAndComesBackIsWaitedFor();
    void disconnectingTheWindowDoesNotEndIt();
    void theConfigurationOfAPanelIsRecorded();
    void aRobotWithUserPasswordAndEncryptionIsRecorded();
    void aRobotBehindAnotherHostIsRecordedTheSameWay();
};

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
    const auto before = lines().size();
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
    const auto before = lines().size();
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

void TestRecordings::aRobotBehindAnotherHostIsRecordedTheSameWay()
{
    const FakeSsh ssh;
    ConnectionSettings settings = fWindow->settings();
    settings.address = ZoAddress::fromText("arm-7.invalid:" + std::to_string(fRobot->port()));
    settings.jumpHost = "gate";
    settings.relay = std::make_shared<SshRelay>("gate", settings.address);
    fWindow->findChild<Recordings*>()->start(settings, planOfAll());
    settings.relay.reset(); // the window may have another one by now
    TRY_VERIFY(lines().size() > 1);
    QVERIFY2(ssh.starts().last().endsWith("gate"), qPrintable(ssh.starts().last()));
    QVERIFY(!ssh.starts().last().contains("BatchMode")); // it may ask the user
}

REGISTER_TEST(TestRecordings, HostApplication)
#include "tst_recordings.moc"
