// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_settings.h"

#include <QList>
#include <QObject>
#include <QPointer>

class ErrorReporter;
class QMainWindow;
class QMessageBox;
class Recording;
class RecordingBar;
struct RecordingPlan;

/// The recordings of one window: they go on whatever becomes of its panels and of its link, and end
/// with it.
class Recordings : public QObject
{
    Q_OBJECT

public:
    /// Their bar is in sight all the time; more would leave no room for panels.
    static constexpr int fMost = 8;

    Recordings(QMainWindow* window, ErrorReporter& errors);
    ~Recordings() override;

    /// Lets the user begin one of this robot.
    void ask(const ConnectionSettings& robot);
    void start(const ConnectionSettings& robot, const RecordingPlan& plan);
    bool isAny() const { return count() > 0; }
    int count() const { return static_cast<int>(fRecordings.size()); }

    /// Whether the window may close now. If not, the user is asked, and the window closes when they
    /// agree and all recordings have ended well.
    bool mayClose();
    /// The user has agreed to that.
    void endAndClose();
    /// The window may close at once from now on.
    void endUnasked();

signals:
    void noted(const QString& text); ///< for the status line

private slots:
    void xOnEnded(Recording* recording, const QString& problem);

private:
    void askToClose();
    void stopAll();

    QMainWindow* const fWindow;
    ErrorReporter& fErrors;
    RecordingBar* const fBar;
    QList<Recording*> fRecordings;
    QPointer<QMessageBox> fQuestion;
    bool fAsks = true;    ///< before the window closes
    bool fCloses = false; ///< the window, as soon as they have ended
};
