// SPDX-License-Identifier: MIT
#include "recording/recording.h"
#include "support/files.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/patience.h"
#include "support/program.h"
#include "support/register_test.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <memory>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

using std::chrono::milliseconds;

/// One recording, by programs that are no good recorders.
class TestRecording : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void whatARecorderShouldNotSayIsNoHarm();
    void aRecorderThatDoesNotEndIsKilled();
    void itsEndWaitsForThatOfTheRecorder();
    void severalAreWaitedForNoLongerThanOne();
    void onlyTheLastWordsAreTold();
    void warningsOfAGoodEndAreTold();
    void wordsAreToldAsTheyWereSaid();
    void anyAddressIsToldAsItIs();
    void thePasswordComesThroughAPipe();
    void aProgramEndsWithTheOneThatStartedIt();

private:
    /// Begins a recording by that script.
    void start(const QByteArray& script, const ConnectionSettings& robot = {},
               milliseconds limit = Recording::fPatience);
    QString path(const QString& name) const { return fFolder.filePath(name); }

    const QTemporaryDir fFolder;
    std::unique_ptr<Recording> fRecording;
    QScopedPointer<QSignalSpy> fEnded;
};

void TestRecording::init()
{
    fEnded.reset();
    fRecording.reset();
}

void TestRecording::start(const QByteArray& script, const ConnectionSettings& robot,
                          milliseconds limit)
{
    QFile file(path("recorder"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("#!/bin/sh\n" + script + '\n') > 0);
    QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    file.close();
    RecordingPlan plan;
    plan.output = "/some/a.csv";
    fRecording = std::make_unique<Recording>(robot, plan, limit);
    fEnded.reset(new QSignalSpy(fRecording.get(), &Recording::ended));
    fRecording->start(file.fileName());
}

void TestRecording::whatARecorderShouldNotSayIsNoHarm()
{
    const QByteArray line = R"({"state":"recording","rows":7,"missed":0,"tooLarge":0,"bytes":9,)"
                            R"("free":null,"age":null,"file":"/other/b.csv","cause":""})";
    start("head -c 5000000 /dev/zero; echo; echo '[]'; echo '" + line + "'; printf '%s' '" + line +
          "'");
    TRY_COMPARE(fEnded->size(), 1);
    QCOMPARE(fEnded->at(0).at(0).toString(), QString());
    QCOMPARE(fRecording->state().rows, qint64(7));
    QCOMPARE(fRecording->file(), QString("/other/b.csv"));
}

void TestRecording::aRecorderThatDoesNotEndIsKilled()
{
    start("trap '' TERM; echo >'" + QFile::encodeName(path("ready")) + "'; exec sleep 1000", {},
          milliseconds(50));
    TRY_VERIFY(QFile::exists(path("ready")));
    fRecording->stop();
    QVERIFY(fRecording->isEnding());
    TRY_COMPARE(fEnded->size(), 1);
    const QString text = fEnded->at(0).at(0).toString();
    QVERIFY2(text.contains("and was killed") && text.contains("/some/a.csv"), qPrintable(text));
}

void TestRecording::itsEndWaitsForThatOfTheRecorder()
{
    const QByteArray ready = QFile::encodeName(path("waits"));
    const QByteArray done = QFile::encodeName(path("done"));
    start("trap 'sleep 0.1; echo >\"" + done + "\"; exit 0' TERM; echo >'" + ready +
          "'; while :; do sleep 0.05; done");
    TRY_VERIFY(QFile::exists(path("waits")));
    fEnded.reset();
    fRecording.reset();
    QVERIFY(QFile::exists(path("done")));
}

void TestRecording::severalAreWaitedForNoLongerThanOne()
{
    constexpr int count = 4;
    constexpr milliseconds limit{1000};
    std::vector<std::unique_ptr<Recording>> recordings;
    for (int i = 0; i < count; ++i) {
        const QString begun = path("begun" + QString::number(i));
        start("trap '' TERM; echo >'" + QFile::encodeName(begun) + "'; exec sleep 1000", {}, limit);
        recordings.push_back(std::move(fRecording));
        TRY_VERIFY(QFile::exists(begun));
    }
    for (const auto& recording : recordings)
        recording->stop();
    QElapsedTimer timer;
    timer.start();
    recordings.clear();
    QVERIFY2(timer.elapsed() < (count - 1) * limit.count(),
             qPrintable(QString::number(timer.elapsed())));
}

void TestRecording::onlyTheLastWordsAreTold()
{
    start("for i in $(seq 3000); do echo \"zo record: word $i\" >&2; done; exit 1");
    TRY_COMPARE(fEnded->size(), 1);
    const QString text = fEnded->at(0).at(0).toString();
    QVERIFY2(text.contains("\nword 2996\nword 2997\nword 2998\nword 2999\nword 3000\n"),
             qPrintable(text));
    QVERIFY(!text.contains("word 2995"));
}

void TestRecording::warningsOfAGoodEndAreTold()
{
    start("echo 'zo record: the file was deleted' >&2; exit 0");
    TRY_COMPARE(fEnded->size(), 1);
    const QString text = fEnded->at(0).at(0).toString();
    QVERIFY2(text.contains("has ended, with warnings.\n\nthe file was deleted\n\nFile: "),
             qPrintable(text));
}

void TestRecording::wordsAreToldAsTheyWereSaid()
{
    const QByteArray said = R"(the file '/a\\b\x1b é' is full)"; // escaped by the recorder
    start("cat >&2 <<'end'\n" + said + "\nend\nexit 1");
    TRY_COMPARE(fEnded->size(), 1);
    const QString text = fEnded->at(0).at(0).toString();
    QVERIFY2(text.contains(QString::fromUtf8(said)), qPrintable(text));
}

void TestRecording::anyAddressIsToldAsItIs()
{
    ConnectionSettings robot;
    robot.address.host = "fe80::1%2";
    start("exit 3", robot);
    TRY_COMPARE(fEnded->size(), 1);
    const QString text = fEnded->at(0).at(0).toString();
    QVERIFY2(text.contains("fe80::1%2") && text.contains("(exit status 3)"), qPrintable(text));
}

void TestRecording::thePasswordComesThroughAPipe()
{
    ConnectionSettings robot;
    robot.password = "open-sesame";
    start("read word; echo \"$word\" >'" + QFile::encodeName(path("read")) +
              "'; tr '\\0' ' ' </proc/$$/cmdline >'" + QFile::encodeName(path("words")) +
              "'; env >'" + QFile::encodeName(path("environment")) + "'",
          robot);
    TRY_COMPARE(fEnded->size(), 1);
    QCOMPARE(bytesOf(path("read")), QByteArray("open-sesame\n"));
    QVERIFY(bytesOf(path("words")).contains("--password-file /dev/stdin"));
    for (const char* name : {"words", "environment"})
        QVERIFY(!bytesOf(path(name)).contains("sesame"));
}

void TestRecording::aProgramEndsWithTheOneThatStartedIt()
{
    int ends[2] = {-1, -1};
    QVERIFY(::pipe(ends) == 0);
    const pid_t parent = ::fork();
    if (parent == 0) {
        EndingProcess process;
        process.start("sleep", {"1000"});
        process.waitForStarted(patience);
        const qint64 pid = process.processId();
        static_cast<void>(::write(ends[1], &pid, sizeof pid) != 0);
        ::kill(::getpid(), SIGKILL);
    }
    qint64 pid = 0;
    const bool isRead = ::read(ends[0], &pid, sizeof pid) == sizeof pid;
    ::waitpid(parent, nullptr, 0);
    ::close(ends[0]);
    ::close(ends[1]);
    QVERIFY(isRead && pid > 0);
    TRY_VERIFY(hasEnded(pid));
}

REGISTER_TEST(TestRecording, HostApplication)
#include "tst_recording.moc"
