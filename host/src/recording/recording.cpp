// SPDX-License-Identifier: MIT
#include "recording/recording.h"

#include <kit/password_file.h>

#include <QStringList>

#include <algorithm>
#include <csignal>
#include <sys/prctl.h>

namespace {

constexpr int longestStatus = 1 << 20;
constexpr int mostWords = 4000;
constexpr int mostLines = 5;

/// The end of what the recorder said, without its name before each line.
QString lastLines(const QByteArray& words)
{
    QStringList lines;
    for (const QByteArray& line : words.split('\n')) {
        QString text = QString::fromUtf8(line.trimmed()); // escaped by the recorder
        const QString name = "zo record: ";
        if (text.startsWith(name))
            text.remove(0, name.size());
        if (!text.isEmpty())
            lines += text;
    }
    const auto others = lines.size() - mostLines;
    return lines.mid(others > 0 ? others : 0).join('\n');
}

/// For a process that has just been forked.
void endWithParent()
{
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
}

} // namespace

#if QT_VERSION_MAJOR == 5
void EndingProcess::setupChildProcess()
{
    endWithParent();
}
#else
EndingProcess::EndingProcess()
{
    setChildProcessModifier(endWithParent);
}
#endif

Recording::Recording(const ConnectionSettings& robot, const RecordingPlan& plan,
                     std::chrono::milliseconds patience)
    : fRobot(robot), fPlan(plan), fTimeToEnd(static_cast<int>(patience.count()))
{
    connect(&fProcess, &QProcess::readyReadStandardOutput, this, &Recording::xReadStatus);
    connect(&fProcess, &QProcess::readyReadStandardError, this, &Recording::xReadWords);
    connect(&fProcess, &QProcess::errorOccurred, this, &Recording::xOnError);
    connect(&fProcess, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &Recording::xOnFinished);
    fKillTimer.setSingleShot(true);
    fKillTimer.setInterval(fTimeToEnd);
    connect(&fKillTimer, &QTimer::timeout, this, &Recording::xKill);
}

Recording::~Recording()
{
    kit::wipe(fRobot.password);
    fProcess.disconnect(this);
    if (fProcess.state() == QProcess::NotRunning)
        return;
    if (!fKillTimer.isActive()) {
        fProcess.terminate();
        fKillTimer.start();
    }
    // Of several that were told to end, each has had the time in which others were waited for.
    if (fProcess.waitForFinished(fKillTimer.remainingTime()))
        return;
    fProcess.kill();
    fProcess.waitForFinished();
}

/// The password goes through a pipe, where neither lists of processes nor disks show it.
void Recording::start(const QString& program)
{
    const QStringList words = recorderWords(fRobot, fPlan);
    if (fRobot.password.empty())
        fProcess.setStandardInputFile(QProcess::nullDevice());
    fProcess.start(program, words);
    if (!fRobot.password.empty() && fProcess.isOpen()) {
        fProcess.write(fRobot.password.data(), static_cast<qint64>(fRobot.password.size()));
        fProcess.write("\n"); // apart: a longer copy of the password would stay in memory
        fProcess.closeWriteChannel();
    }
    kit::wipe(fRobot.password);
}

void Recording::stop()
{
    if (fIsEnding)
        return;
    fIsEnding = true;
    fProcess.terminate();
    fKillTimer.start();
    emit changed();
}

void Recording::xKill()
{
    fIsKilled = true;
    fProcess.kill();
}

void Recording::xReadStatus()
{
    fProcess.setReadChannel(QProcess::StandardOutput);
    while (fProcess.canReadLine())
        if (const auto state = recordingStateFrom(fProcess.readLine()))
            fState = *state;
    if (fProcess.bytesAvailable() > longestStatus)
        fProcess.readAllStandardOutput(); // no recorder writes such lines
    emit changed();
}

void Recording::xReadWords()
{
    fWords = (fWords + fProcess.readAllStandardError()).right(mostWords);
}

void Recording::xOnError(QProcess::ProcessError pError)
{
    if (pError == QProcess::FailedToStart) // the others are told by its end
        emit ended(tr("%1 cannot be started: %2").arg(fProcess.program(), fProcess.errorString()));
}

void Recording::xOnFinished(int pExitCode, QProcess::ExitStatus pHow)
{
    fKillTimer.stop();
    xReadWords();
    xReadStatus();
    emit ended(endText(pExitCode, pHow));
}

/// Why it ended, or what the recorder warned of: rows may be lost without an error.
QString Recording::endText(int exitCode, QProcess::ExitStatus how) const
{
    const QString words = lastLines(fWords);
    const bool isWell = how == QProcess::NormalExit && exitCode == 0;
    if (isWell && words.isEmpty())
        return {};
    QStringList parts;
    if (isWell)
        parts += tr("The recording of %1 has ended, with warnings.").arg(robot());
    else if (how == QProcess::NormalExit)
        parts += tr("The recording of %1 has ended with an error (exit status %2).")
                     .arg(robot(), QString::number(exitCode));
    else if (fIsKilled)
        parts += tr("The recording of %1 did not end within %2 s, and was killed.")
                     .arg(robot(), QString::number(fTimeToEnd / 1000.0));
    else
        parts += tr("The recording of %1 was killed, or crashed.").arg(robot());
    parts += words;
    parts += tr("File: %1").arg(file());
    parts.removeAll(QString());
    return parts.join("\n\n");
}
