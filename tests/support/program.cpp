// SPDX-License-Identifier: MIT
#include "support/program.h"

#include "support/patience.h"

#include <QDeadlineTimer>
#include <QFile>

#include <csignal>
#include <sys/prctl.h>

namespace {

constexpr int slice = 50; ///< ms: how long it waits for one of the outputs, and not the other

void dieWithParent()
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
}

} // namespace

Program::Program(const QString& file, const QStringList& arguments)
{
    setProgram(file);
    setArguments(arguments);
#if QT_VERSION_MAJOR > 5
    setChildProcessModifier(dieWithParent);
#endif
}

Program::~Program()
{
    kill();
    waitForFinished(patience);
}

#if QT_VERSION_MAJOR == 5
void Program::setupChildProcess()
{
    dieWithParent();
}
#endif

QByteArray Program::output()
{
    fOutput += readAllStandardOutput();
    return fOutput;
}

QString Program::errors()
{
    fErrors += readAllStandardError();
    return QString::fromLocal8Bit(fErrors);
}

bool Program::waitUntil(const std::function<bool()>& holds)
{
    const QDeadlineTimer deadline(patience);
    while (!holds()) {
        if (deadline.hasExpired() || state() == NotRunning)
            return holds();
        waitForReadyRead(slice);
    }
    return true;
}

QString Program::waitForLine(const QString& start)
{
    QString rest;
    waitUntil([&] {
        const QStringList lines = QString::fromLocal8Bit(output()).split('\n');
        for (int i = 0; i + 1 < lines.size(); ++i) // behind the last end of line is no whole one
            if (rest.isEmpty() && lines.at(i).startsWith(start))
                rest = lines.at(i).mid(start.size());
        return !rest.isEmpty();
    });
    return rest;
}

bool Program::waitForError(const QString& part)
{
    return waitUntil([&] { return errors().contains(part); });
}

int Program::waitForExit()
{
    const bool ended = state() == NotRunning || waitForFinished(patience);
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
