// SPDX-License-Identifier: MIT
#include "support/captured_stderr.h"
#include "support/forked_action.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <kit/output.h>
#include <kit/program.h>
#include <kit/usage_error.h>

#include <QtTest>

#include <fcntl.h>
#include <functional>
#include <unistd.h>

namespace {

struct Ended
{
    int status;
    std::string errors;
};

Ended endOf(const std::function<int()>& run)
{
    const CapturedStderr errors;
    const int status = kit::runProgram("tool", run);
    return {status, errors.text()};
}

} // namespace

/// How a program of this project begins, and how it ends.
class TestProgramEnd : public GuardedTest
{
    Q_OBJECT

private slots:
    void theStatusIsThatOfTheProgram();
    void wrongUseIsToldWithTheWayToTheHelp();
    void anErrorIsToldOnOneLine();
    void aClosedOutputEndsItWithoutAWord();
    void aWriteIntoAClosedPipeIsNoEnd();
    void whatItOpensTakesNoClosedStream();
};

void TestProgramEnd::theStatusIsThatOfTheProgram()
{
    const Ended ended = endOf([] { return 7; });
    QCOMPARE(ended.status, 7);
    QCOMPARE(ended.errors, std::string());
}

void TestProgramEnd::wrongUseIsToldWithTheWayToTheHelp()
{
    const Ended ended = endOf([]() -> int { throw kit::UsageError("there is no '--frob'"); });
    QCOMPARE(ended.status, kit::exitWrongUse);
    QCOMPARE(ended.errors, std::string("tool: there is no '--frob' (see tool --help)\n"));
}

void TestProgramEnd::anErrorIsToldOnOneLine()
{
    const Ended ended = endOf([]() -> int { throw std::runtime_error("no\nrobot\x1b"); });
    QCOMPARE(ended.status, kit::exitFailed);
    QCOMPARE(ended.errors, std::string("tool: no\\nrobot\\x1b\n"));
}

void TestProgramEnd::aClosedOutputEndsItWithoutAWord()
{
    const Ended ended = endOf([]() -> int { throw kit::OutputClosed(); });
    QCOMPARE(ended.status, kit::exitFailed);
    QCOMPARE(ended.errors, std::string());
}

void TestProgramEnd::aWriteIntoAClosedPipeIsNoEnd()
{
    ForkedAction action([] {
        kit::prepareProcess();
        int ends[2];
        if (::pipe(ends) != 0)
            return 2;
        ::close(ends[0]);
        return ::write(ends[1], "x", 1) < 0 && errno == EPIPE ? 0 : 1;
    });
    QCOMPARE(action.waitForExit(), 0);
}

void TestProgramEnd::whatItOpensTakesNoClosedStream()
{
    ForkedAction action([] {
        ::close(STDIN_FILENO);
        ::close(STDOUT_FILENO);
        kit::prepareProcess();
        const int opened = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
        // And a stream that was closed cannot be written into.
        return opened > STDERR_FILENO && ::write(STDOUT_FILENO, "x", 1) < 0 ? 0 : 1;
    });
    QCOMPARE(action.waitForExit(), 0);
}

REGISTER_TEST(TestProgramEnd, NoApplication)
#include "tst_program_end.moc"
