// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/program.h"
#include "support/register_test.h"

#include <kit/child_process.h>
#include <kit/descriptor.h>
#include <kit/program.h>

#include <QFile>
#include <QTemporaryFile>
#include <QtTest>

#include <csignal>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

/// The programs that ours start.
class TestChildProcess : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void bothItsOutputsGoWhereTheyAreWanted();
    void itsStreamsMayBeApart();
    void itsEndIsTold();
    void itsEndIsNoticedThoughNobodyTellsHow();
    void aProgramIsToldHoweverItWasStarted();
    void aMissingProgramIsTold();
    void itEndsWithItsObject();
    void whatItHasStartedEndsWithIt();
    void itEndsWithItsParent();
    void oneWhoseParentHasGoneEndsAtOnce();
    void aCtrlCIsNotForIt();
    void itDoesNotReadTheTerminal();
    void itInheritsNothingThatIsOpen();
    void signalsThatItsMakerBlocksOrIgnoresReachIt();

private:
    QByteArray printed();

    QScopedPointer<QTemporaryFile> fOutput;
};

void TestChildProcess::init()
{
    fOutput.reset(new QTemporaryFile);
    QVERIFY(fOutput->open());
}

QByteArray TestChildProcess::printed()
{
    QFile file(fOutput->fileName());
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

void TestChildProcess::bothItsOutputsGoWhereTheyAreWanted()
{
    kit::ChildProcess child({"sh", "-c", "echo one; echo 'two words' >&2; echo $1", "sh", "a b"},
                            fOutput->handle());
    QCOMPARE(child.wait(), 0);
    QCOMPARE(printed(), QByteArray("one\ntwo words\na b\n"));
}

void TestChildProcess::itsStreamsMayBeApart()
{
    QTemporaryFile input;
    QTemporaryFile errors;
    QVERIFY(input.open() && errors.open());
    QVERIFY(input.write("in\n") == 3 && input.seek(0));
    kit::ChildProcess child({"sh", "-c", "cat; echo err >&2"},
                            {input.handle(), fOutput->handle(), errors.handle()});
    QCOMPARE(child.wait(), 0);
    QCOMPARE(printed(), QByteArray("in\n"));
    QVERIFY(errors.seek(0));
    QCOMPARE(errors.readAll(), QByteArray("err\n"));
}

void TestChildProcess::itsEndIsTold()
{
    kit::ChildProcess child({"sh", "-c", "exit 3"}, fOutput->handle());
    TRY_VERIFY(!child.isRunning());
    QCOMPARE(child.exitStatus(), 3);
    QCOMPARE(child.wait(), 3);
    kit::ChildProcess killed({"sleep", "1000"}, fOutput->handle());
    QVERIFY(killed.isRunning());
    killed.signal(SIGTERM);
    QCOMPARE(killed.wait(), -1);
    QVERIFY(!killed.isRunning());
}

/// As when a program is started by one that wants no news of its children.
void TestChildProcess::itsEndIsNoticedThoughNobodyTellsHow()
{
    const auto before = std::signal(SIGCHLD, SIG_IGN);
    kit::ChildProcess watched({"true"}, fOutput->handle());
    const bool isNoticed = QTest::qWaitFor([&] { return !watched.isRunning(); }, patience);
    kit::ChildProcess awaited({"true"}, fOutput->handle());
    const int status = awaited.wait();
    std::signal(SIGCHLD, before);
    QVERIFY(isNoticed);
    QCOMPARE(watched.exitStatus(), -1);
    QCOMPARE(status, -1);
    QVERIFY(!awaited.isRunning());
}

void TestChildProcess::aProgramIsToldHoweverItWasStarted()
{
    const auto pipeBefore = std::signal(SIGPIPE, SIG_DFL);
    const auto before = std::signal(SIGCHLD, SIG_IGN);
    kit::prepareProcess();
    kit::ChildProcess child({"sh", "-c", "exit 3"}, fOutput->handle());
    const int status = child.wait();
    std::signal(SIGCHLD, before);
    std::signal(SIGPIPE, pipeBefore);
    QCOMPARE(status, 3);
}

void TestChildProcess::aMissingProgramIsTold()
{
    kit::ChildProcess child({"no-such-program"}, fOutput->handle());
    QCOMPARE(child.wait(), int{kit::ChildProcess::fProgramMissing});
}

void TestChildProcess::itEndsWithItsObject()
{
    std::optional<kit::ChildProcess> child;
    child.emplace(std::vector<std::string>{"sleep", "1000"}, fOutput->handle());
    const pid_t pid = child->pid();
    QCOMPARE(::kill(pid, 0), 0);
    child.reset();
    QCOMPARE(::kill(pid, 0), -1);
}

void TestChildProcess::whatItHasStartedEndsWithIt()
{
    std::optional<kit::ChildProcess> child;
    child.emplace(std::vector<std::string>{"sh", "-c", "sleep 1000 & echo $!; wait"},
                  fOutput->handle());
    TRY_VERIFY(printed().endsWith('\n'));
    const qint64 grandchild = printed().trimmed().toLongLong();
    QVERIFY(!hasEnded(grandchild));
    child.reset();
    TRY_VERIFY(hasEnded(grandchild));
}

void TestChildProcess::itEndsWithItsParent()
{
    int ends[2] = {-1, -1};
    QCOMPARE(::pipe(ends), 0);
    const pid_t parent = ::fork();
    if (parent == 0) {
        // What the child prints goes into the pipe: whoever has its writing end lives.
        new kit::ChildProcess({"sh", "-c", "echo; exec sleep 1000"}, ends[1]);
        char line = 0;
        ::_exit(::read(ends[0], &line, 1) == 1 ? 0 : 1); // now it runs
    }
    ::close(ends[1]);
    int status = 0;
    QCOMPARE(::waitpid(parent, &status, 0), parent);
    QCOMPARE(status, 0);
    pollfd pipe{ends[0], POLLIN, 0};
    QCOMPARE(::poll(&pipe, 1, patience), 1);
    QVERIFY((pipe.revents & POLLHUP) != 0);
    ::close(ends[0]);
}

void TestChildProcess::oneWhoseParentHasGoneEndsAtOnce()
{
    int ends[2] = {-1, -1};
    QCOMPARE(::pipe(ends), 0);
    const auto statusOfOne = [&ends] {
        const pid_t child = ::fork();
        if (child == 0) {
            ::dup2(ends[1], kit::standardOutput);
            kit::endWithParent();
            ::_exit(7);
        }
        int status = 0;
        return ::waitpid(child, &status, 0) == child ? WEXITSTATUS(status) : -1;
    };
    QCOMPARE(statusOfOne(), 7); // somebody could read what it says
    ::close(ends[0]);
    QCOMPARE(statusOfOne(), int{kit::exitFailed});
    ::close(ends[1]);
}

void TestChildProcess::aCtrlCIsNotForIt()
{
    const kit::ChildProcess child({"sleep", "1000"}, fOutput->handle());
    TRY_COMPARE(::getpgid(child.pid()), child.pid());
    QVERIFY(::getpgid(0) != child.pid());
}

void TestChildProcess::itDoesNotReadTheTerminal()
{
    kit::ChildProcess child({"readlink", "/proc/self/fd/0"}, fOutput->handle());
    QCOMPARE(child.wait(), 0);
    QCOMPARE(printed(), QByteArray("/dev/null\n"));
}

void TestChildProcess::itInheritsNothingThatIsOpen()
{
    const kit::Descriptor open(::open("/dev/zero", O_RDONLY)); // without O_CLOEXEC
    QVERIFY(open.get() > 2);
    // The number behind 2 is that of the folder itself, which ls reads.
    kit::ChildProcess child({"ls", "/proc/self/fd"}, fOutput->handle());
    QCOMPARE(child.wait(), 0);
    QCOMPARE(printed(), QByteArray("0\n1\n2\n3\n"));
}

void TestChildProcess::signalsThatItsMakerBlocksOrIgnoresReachIt()
{
    sigset_t blocked;
    sigset_t before;
    ::sigemptyset(&blocked);
    ::sigaddset(&blocked, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const auto pipeBefore = std::signal(SIGPIPE, SIG_IGN);
    kit::ChildProcess first({"sleep", "1000"}, fOutput->handle());
    kit::ChildProcess second({"sleep", "1000"}, fOutput->handle());
    std::signal(SIGPIPE, pipeBefore);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    const auto runsSleep = [](const kit::ChildProcess& child) {
        QFile name(QString("/proc/%1/comm").arg(child.pid()));
        return name.open(QIODevice::ReadOnly) && name.readAll() == "sleep\n";
    };
    TRY_VERIFY(runsSleep(first) && runsSleep(second));
    first.signal(SIGTERM);
    second.signal(SIGPIPE);
    TRY_VERIFY(!first.isRunning() && !second.isRunning());
}

REGISTER_TEST(TestChildProcess, QCoreApplication)
#include "tst_child_process.moc"
