// SPDX-License-Identifier: MIT
#include "recording/recordings.h"

#include "connection/ssh_relay.h"
#include "dialogs/ending_question.h"
#include "dialogs/error_reporter.h"
#include "dialogs/window_order.h"
#include "recording/recording.h"
#include "recording/recording_bar.h"
#include "recording/recording_dialog.h"

#include <QMainWindow>
#include <QMessageBox>

#include <utility>

Recordings::Recordings(QMainWindow* window, ErrorReporter& errors)
    : QObject(window), fWindow(window), fErrors(errors), fBar(new RecordingBar(window))
{
    window->addToolBarBreak(Qt::BottomToolBarArea);
    window->addToolBar(Qt::BottomToolBarArea, fBar);
}

Recordings::~Recordings()
{
    for (Recording* recording : std::as_const(fRecordings))
        recording->disconnect(this);
    stopAll(); // all at once, before each is waited for
    qDeleteAll(fRecordings);
}

void Recordings::ask(const ConnectionSettings& robot)
{
    if (recorderProgram().isEmpty()) {
        fErrors.report(fWindow, recorderMissing());
        return;
    }
    if (robot.password.find_first_of("\r\n") != std::string::npos) {
        fErrors.report(fWindow,
                       tr("The password of this robot has a line break, which the recorder "
                          "cannot be given. Give the robot's user another password, or "
                          "connect as another user."));
        return;
    }
    if (fRecordings.size() == fMost) {
        fErrors.report(fWindow, tr("%n recordings are running in this window: end one of them "
                                   "first.",
                                   nullptr, fMost));
        return;
    }
    auto* dialog = new RecordingDialog(robot.robotText(), lastPlan(), fErrors, fWindow);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this,
            [this, dialog, robot] { start(robot, dialog->plan()); });
    dialog->open();
}

void Recordings::start(const ConnectionSettings& robot, const RecordingPlan& plan)
{
    auto* recording = new Recording(robot, plan);
    fRecordings += recording;
    fCloses = false; // the user has gone on since they agreed to that
    if (robot.relay)
        robot.relay->allowQuestions();
    connect(recording, &Recording::ended, this,
            [this, recording](const QString& problem) { xOnEnded(recording, problem); });
    fBar->add(*recording);
    recording->start(recorderProgram());
}

void Recordings::xOnEnded(Recording* recording, const QString& problem)
{
    fRecordings.removeOne(recording);
    recording->deleteLater(); // it is what calls
    if (problem.isEmpty()) {
        emit noted(tr("Recorded %1: %2").arg(recording->file(), recordingText(recording->state())));
    } else {
        fCloses = false; // or nobody would read why
        fErrors.report(fWindow, problem);
    }
    if (fCloses && !isAny())
        fWindow->close();
}

bool Recordings::mayClose()
{
    if (!isAny() || !fAsks)
        return true;
    if (!fCloses)
        askToClose();
    return false;
}

void Recordings::askToClose()
{
    if (!fQuestion) {
        const QString text = tr("%n recording(s) of this window are running. Closing it ends them; "
                                "their files are kept.",
                                nullptr, count());
        fQuestion = makeEndingQuestion(fWindow, text, tr("&End recordings and close"),
                                       [this] { endAndClose(); });
        fQuestion->open();
    }
    bringToFront(*fQuestion);
}

void Recordings::endAndClose()
{
    fCloses = true;
    stopAll();
    if (!isAny())
        fWindow->close();
}

void Recordings::endUnasked()
{
    fAsks = false;
    stopAll();
}

void Recordings::stopAll()
{
    for (Recording* recording : std::as_const(fRecordings))
        recording->stop();
}
