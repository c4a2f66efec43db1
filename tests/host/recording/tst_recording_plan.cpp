// SPDX-License-Identifier: MIT
#include "connection/connection_settings.h"
#include "connection/ssh_relay.h"
#include "recording/recording_plan.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/register_test.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

/// What the recorder is told, and where it is found.
class TestRecordingPlan : public GuardedTest
{
    Q_OBJECT

private slots:
    void init() { QSettings().clear(); }
    void thePlanBecomesWords_data();
    void thePlanBecomesWords();
    void theWayToTheRobotBecomesWords();
    void allNodesArePartOfTheWay();
    void aRelayIsPartOfTheWay();
    void thePasswordIsInNoWord();
    void certificatesCountWithEncryptionOnly();
    void aKeyThatLooksLikeAnOptionIsAKey();
    void theLastPlanComesBack();
    void settingsOfAnyKindAreNoHarm();
    void theRecorderIsFoundInThePath();
};

void TestRecordingPlan::thePlanBecomesWords_data()
{
    QTest::addColumn<int>("what");
    QTest::addColumn<bool>("isRich");
    QTest::addColumn<QString>("words");
    using What = RecordingPlan::What;
    QTest::newRow("configuration") << int(What::Configuration) << false << "--config /c.xml";
    QTest::newRow("keys") << int(What::Keys) << false << "-- a b";
    QTest::newRow("all") << int(What::All) << true
                         << "--rotate 1h --changes --key-names --gap-rows --all";
}

void TestRecordingPlan::thePlanBecomesWords()
{
    QFETCH(int, what);
    QFETCH(bool, isRich);
    QFETCH(QString, words);
    RecordingPlan plan;
    plan.what = RecordingPlan::What(what);
    plan.configuration = "/c.xml";
    plan.keys = QStringList{"a", "b"};
    plan.period = 50;
    plan.output = "/a.csv";
    plan.changes = isRich;
    plan.keyNames = isRich;
    plan.gapRows = isRich;
    plan.rotation = isRich ? "1h" : "";
    QCOMPARE(recorderWords({}, plan).join(' '),
             "--connect 127.0.0.1:6379 --status --output /a.csv --period 50 " + words);
}

void TestRecordingPlan::theWayToTheRobotBecomesWords()
{
    ConnectionSettings robot;
    robot.address = ZoAddress::fromText("[::1]:6380");
    robot.user = "alice";
    robot.prefix = "robot7/";
    robot.tls = true;
    robot.caFile = "/ca";
    robot.certFile = "/cert";
    robot.keyFile = "/key";
    robot.timeout = 700;
    const QString words = recorderWords(robot, {}).join(' ');
    QVERIFY2(words.startsWith("--connect [::1]:6380 --prefix robot7/ --user alice --tls --ca /ca "
                              "--cert /cert "
                              "--key /key --timeout 700 --status"),
             qPrintable(words));
}

void TestRecordingPlan::allNodesArePartOfTheWay()
{
    ConnectionSettings robot;
    robot.other.furtherAddresses = {ZoAddress::fromText("arm:7001"), ZoAddress::fromText("[::1]")};
    robot.other.sentinel = "arms";
    QCOMPARE(
        recorderWords(robot, {}).mid(0, 4),
        (QStringList{"--connect", "127.0.0.1:6379,arm:7001,[::1]:6379", "--sentinel", "arms"}));
    robot.other.sentinel.clear();
    robot.other.replica = true;
    QCOMPARE(recorderWords(robot, {}).value(2), QString("--replica"));
}

void TestRecordingPlan::aRelayIsPartOfTheWay()
{
    ConnectionSettings robot;
    robot.jumpHost = "gate";
    robot.openWay();
    const QStringList words = recorderWords(robot, {});
    QCOMPARE(words.mid(0, 4), (QStringList{"--connect", "127.0.0.1:6379", "--socket",
                                           QString::fromStdString(robot.relay->path())}));
}

void TestRecordingPlan::thePasswordIsInNoWord()
{
    ConnectionSettings robot;
    robot.password = "open-sesame";
    const QString words = recorderWords(robot, {}).join(' ');
    QVERIFY(words.contains("--password-file /dev/stdin"));
    QVERIFY(!words.contains("sesame"));
}

void TestRecordingPlan::certificatesCountWithEncryptionOnly()
{
    ConnectionSettings robot;
    robot.caFile = "/ca";
    QVERIFY(!recorderWords(robot, {}).contains("--ca"));
}

void TestRecordingPlan::aKeyThatLooksLikeAnOptionIsAKey()
{
    RecordingPlan plan;
    plan.what = RecordingPlan::What::Keys;
    plan.keys = QStringList{"--all"};
    QCOMPARE(recorderWords({}, plan).mid(recorderWords({}, plan).size() - 2),
             (QStringList{"--", "--all"}));
}

void TestRecordingPlan::theLastPlanComesBack()
{
    QCOMPARE(lastPlan().period, 1000);
    for (const auto what : {RecordingPlan::What::Keys, RecordingPlan::What::All,
                            RecordingPlan::What::Configuration}) {
        RecordingPlan plan;
        plan.what = what;
        plan.configuration = "/c.xml";
        plan.keys = QStringList{"a", "b, c"};
        plan.period = 20;
        plan.rotation = "2d";
        plan.changes = true;
        plan.keyNames = true;
        plan.gapRows = false;
        plan.output = "/a.csv";
        rememberPlan(plan);
        const RecordingPlan last = lastPlan();
        QCOMPARE(last.output, QString()); // each recording has a file of its own
        plan.output.clear();
        QCOMPARE(recorderWords({}, last), recorderWords({}, plan));
    }
}

void TestRecordingPlan::settingsOfAnyKindAreNoHarm()
{
    QSettings store;
    store.setValue("recording/what", 7);
    store.setValue("recording/period", "often");
    store.setValue("recording/keys", 3.5);
    QCOMPARE(int(lastPlan().what), int(RecordingPlan::What::Configuration));
    QCOMPARE(lastPlan().period, 0); // the dialog's field has its own limits
}

void TestRecordingPlan::theRecorderIsFoundInThePath()
{
    const QByteArray before = qgetenv("PATH");
    const QTemporaryDir folder;
    qputenv("PATH", QFile::encodeName(folder.path()));
    const QString none = recorderProgram();
    QFile file(folder.filePath("zo-record"));
    const bool isMade = file.open(QIODevice::WriteOnly) && file.setPermissions(QFile::ReadOwner);
    const QString noProgram = recorderProgram();
    file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    const QString found = recorderProgram();
    qputenv("PATH", before);
    QVERIFY(isMade);
    QCOMPARE(none, QString());
    QCOMPARE(noProgram, QString());
    QCOMPARE(found, file.fileName());
}

REGISTER_TEST(TestRecordingPlan, HostApplication)
#include "tst_recording_plan.moc"
