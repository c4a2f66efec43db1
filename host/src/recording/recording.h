// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_settings.h"
#include "recording/recording_plan.h"
#include "recording/recording_state.h"

#include <QObject>
#include <QProcess>
#include <QTimer>

#include <chrono>
#include <memory>

/// A program that is told to end when the one that started it has ended, in whatever way. The
/// kernel asks the thread that starts it: the GUI's, which lives as long.
class EndingProcess : public QProcess
{
#if QT_VERSION_MAJOR == 5
protected:
    void setupChildProcess() override;
#else
public:
    EndingProcess();
#endif
};

/// A recording that the user began: the recorder, which runs as a program of its own with a link of
/// its own, and what it says. It is told to end with this object, which waits for that.
class Recording : public QObject
{
    Q_OBJECT

public:
    /// How long the recorder may take to bring its last rows to the disk.
    static constexpr std::chrono::milliseconds fPatience{10000};

    Recording(const ConnectionSettings& robot, const RecordingPlan& plan,
              std::chrono::milliseconds patience = fPatience);
    ~Recording() override;

    /// Starts `program`; whatever comes of it is told by signals.
    void start(const QString& program);
    /// Tells it to end, and kills it when its time is over.
    void stop();

    bool isEnding() const { return fIsEnding; }
    const RecordingState& state() const { return fState; }
    /// The one that is written, or will be.
    QString file() const { return fState.file.isEmpty() ? fPlan.output : fState.file; }
    QString robot() const { return fRobot.wayText(); }

signals:
    void changed(); ///< state, file, or whether it is ending
    /// Last of all; `problem` is empty when it ended well and the recorder had nothing to say, or
    /// says what went wrong.
    void ended(const QString& problem);

private slots:
    void xReadStatus();
    void xReadWords();
    void xOnError(QProcess::ProcessError pError);
    void xOnFinished(int pExitCode, QProcess::ExitStatus pHow);
    void xKill();

private:
    QString endText(int exitCode, QProcess::ExitStatus how) const;

    ConnectionSettings fRobot; ///< without the password; its relay leads the recorder, too
    const RecordingPlan fPlan;
    const int fTimeToEnd; ///< ms
    EndingProcess fProcess;
    QTimer fKillTimer;
    RecordingState fState;
    QByteArray fWords; ///< that it said on standard error, the last ones
    bool fIsEnding = false;
    bool fIsKilled = false;
};
