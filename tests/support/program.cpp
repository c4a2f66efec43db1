// SPDX-License-Identifier: MIT
#include "program.h"

#include <QElapsedTimer>
#include <QFile>

#include <csignal>
#include <sys/prctl.h>

namespace {

constexpr int deadline = 20000; ///< ms
constexpr int slice = 50;       ///< ms

} // namespace

Program::Program(const QString& file, const QStringList& arguments)
{
    setProgram(file);
    setArguments(arguments);
}

Program::~Program()
{
    kill();
    waitForFinished(deadline);
}

void Program::setupChildProcess()
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
}

QString Program::waitForLine(const QString& start)
{
    QElapsedTimer clock;
    clock.start();
    while (!clock.hasExpired(deadline)) {
        fOutput += QString::fromLocal8Bit(readAllStandardOutput());
        const QStringList lines = fOutput.split('\n');
        for (int i = 0; i + 1 < lines.size(); ++i) // behind the last end of line is no whole one
            if (lines.at(i).startsWith(start))
                return lines.at(i).mid(start.size());
        if (state() == NotRunning)
            break;
        setReadChannel(StandardOutput);
        waitForReadyRead(slice);
    }
    return {};
}

QString Program::errors()
{
    fErrors += QString::fromLocal8Bit(readAllStandardError());
    return fErrors;
}

bool Program::waitForError(const QString& part)
{
    QElapsedTimer clock;
    clock.start();
    while (!errors().contains(part)) {
        if (clock.hasExpired(deadline) || state() == NotRunning)
            return errors().contains(part);
        setReadChannel(StandardError);
        waitForReadyRead(slice);
    }
    return true;
}

int Program::waitForExit()
{
    const bool ended = state() == NotRunning || waitForFinished(deadline);
    return ended && exitStatus() == NormalExit ? exitCode() : -1;
}

void Program::signal(int number) const
{
    ::kill(static_cast<pid_t>(processId()), number);
}

QList<qint64> Program::children() const
{
    QFile file(QString("/proc/%1/task/%1/children").arg(processId()));
    QList<qint64> pids;
    if (file.open(QIODevice::ReadOnly))
        for (const QByteArray& pid : file.readAll().simplified().split(' '))
            if (!pid.isEmpty())
                pids += pid.toLongLong();
    return pids;
}

bool hasEnded(qint64 pid)
{
    QFile file(QString("/proc/%1/stat").arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        return true;
    const QByteArray text = file.readAll();
    return text.mid(text.lastIndexOf(')') + 2, 1) == "Z";
}
