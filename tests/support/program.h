// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QStringList>

#include <functional>

/// One of the project's own programs, run by a test. It dies with the test.
class Program : public QProcess
{
public:
    Program(const QString& file, const QStringList& arguments);
    ~Program() override;

    /// All of standard output and of standard error so far.
    QByteArray output();
    QString errors();

    /// Waits until `holds` does, which asks what was printed so far. False when it does not before
    /// the program's end, or in all the time that a test has.
    bool waitUntil(const std::function<bool()>& holds);

    /// Waits until a line that begins with `start` stands on standard output, and returns the rest
    /// of that line; empty when none comes.
    QString waitForLine(const QString& start);

    /// Waits until standard error contains `part`.
    bool waitForError(const QString& part);

    /// Waits for the end; the exit status, or -1 when there is none: the program runs on or was
    /// killed.
    int waitForExit();

    void signal(int number) const;

    /// The processes that it started itself.
    QList<qint64> children() const;

#if QT_VERSION_MAJOR == 5
protected:
    void setupChildProcess() override;
#endif

private:
    QByteArray fOutput;
    QByteArray fErrors;
};

/// Whether there is no process `pid` any more, or only what remains of it until its parent asks.
bool hasEnded(qint64 pid);
