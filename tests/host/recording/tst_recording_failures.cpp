// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/recordings_bench.h"
#include "support/register_test.h"

#include <QtTest>

/// What the user of a window is told when a recording fails.
class TestRecordingFailures : public GuardedTest, private RecordingsBench
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup()
    {
        tearDown();
        GuardedTest::cleanup();
    }
    void aWrongPasswordIsTold();
    void aPasswordThatNoRecorderTakesIsTold();
    void aMissingRecorderIsTold();
    void aRecorderThatCannotRunIsTold();
    void aFolderThatIsNotThereIsTold();
    void aFileThatIsNoRecordingIsTold();
    void aFullDiskIsTold();
    void aRecorderThatDiesIsTold();
};

void TestRecordingFailures::aWrongPasswordIsTold()
{
    RedisServer::Options options;
    options.defaultPassword = "right";
    ConnectionSettings settings;
    settings.password = "right";
    useRobot(options, settings);
    settings.address.port = fRobot->port();
    settings.password = "wrong";
    fWindow->findChild<Recordings*>()->start(settings, planOfAll());
    TRY_VERIFY(hasNone() && shownBox());
    QVERIFY2(boxText().contains("WRONGPASS"), qPrintable(boxText()));
    QVERIFY(!boxText().contains("wrong\n"));
    QVERIFY(!QFile::exists(path()));
}

void TestRecordingFailures::aPasswordThatNoRecorderTakesIsTold()
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

void TestRecordingFailures::aMissingRecorderIsTold()
{
    qputenv("PATH", QFile::encodeName(path("nowhere")));
    action("Record...")->trigger();
    QVERIFY2(boxText().contains("Install the package zo-record"), qPrintable(boxText()));
    QVERIFY(shownBox()->textInteractionFlags() & Qt::TextSelectableByMouse);
}

void TestRecordingFailures::aRecorderThatCannotRunIsTold()
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

void TestRecordingFailures::aFolderThatIsNotThereIsTold()
{
    record(path("no/such/folder.csv"));
    TRY_VERIFY(hasNone() && shownBox());
    QVERIFY2(boxText().contains("cannot record into the file '" + path("no/such/folder.csv")) &&
                 boxText().contains("exit status 1") && !boxText().contains("zo record:"),
             qPrintable(boxText()));
}

void TestRecordingFailures::aFileThatIsNoRecordingIsTold()
{
    writeBytes(path(), "dear diary\n");
    record(path());
    answer("Go on behind it");
    TRY_VERIFY(hasNone() && shownBox());
    QVERIFY2(boxText().contains("is no recording of these columns"), qPrintable(boxText()));
    QCOMPARE(bytesOf(path()), QByteArray("dear diary\n"));
}

void TestRecordingFailures::aFullDiskIsTold()
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

void TestRecordingFailures::aRecorderThatDiesIsTold()
{
    writeRecorder("echo 'zo record: <b>odd</b>' >&2; kill -KILL $$");
    record(path());
    TRY_VERIFY(hasNone() && shownBox());
    QVERIFY2(boxText().contains("was killed, or crashed") && boxText().contains("<b>odd</b>"),
             qPrintable(boxText()));
    QCOMPARE(shownBox()->textFormat(), Qt::PlainText);
}

REGISTER_TEST(TestRecordingFailures, HostApplication)
#include "tst_recording_failures.moc"
