// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QStringList>

/// One of the project's own programs, run by a test. It dies with the test.
class Program : public QProcess
{
public:
    Program(const QString& file, const QStringList& arguments);
    ~Program() override;

    /// Waits until a line that begins with `start` stands on standard output, and returns the rest
    /// of that line. Empty when the program ends before or none comes within 20 s.
    QString waitForLine(const QString& start);

    /// Waits until standard error contains `part`; false when that does not happen within 20 s.
    bool waitForError(const QString& part);

    /// All of standard error so far.
    QString errors();

    /// Waits for the end, at most 20 s; the exit status, or -1 when there is none: the program runs
    /// on or was killed.
    int waitForExit();

    void signal(int number) const;

    /// The processes that it started itself.
    QList<qint64> children() const;

protected:
    void setupChildProcess() override;

private:
    QString fOutput;
    QString fErrors;
};

/// Whether there is no process `pid` any more, or only what remains of it until its parent asks.
bool hasEnded(qint64 pid);
