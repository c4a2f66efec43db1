// SPDX-License-Identifier: MIT
#include "connecting.h"

#include "connection/connection_attempt.h"
#include "connection/recent_connections.h"
#include "dialogs/error_reporter.h"
#include "dialogs/window_order.h"
#include "robots/kept_passwords.h"
#include "windows/main_window.h"

#include <QApplication>

namespace {

/// Robots that answer sooner need no dialog to tell what is going on.
constexpr int quietConnecting = 300; ///< ms

} // namespace

Connecting::Connecting(KeptPasswords& passwords, ErrorReporter& errors)
    : fPasswords(passwords), fErrors(errors)
{
    fShowTimer.setInterval(quietConnecting);
    fShowTimer.setSingleShot(true);
    connect(&fShowTimer, &QTimer::timeout, this, &Connecting::xShowProgress);
}

Connecting::~Connecting()
{
    delete fDialog;
}

void Connecting::ask(const ConnectionSettings& settings)
{
    if (fAttempt) {
        xShowProgress();
        return;
    }
    fRefusedWindow = nullptr;
    openDialog(settings);
}

void Connecting::askAgainFor(MainWindow* window)
{
    if (fDialog)
        fDialog->close(); // it may be there for another robot
    fDialog = nullptr;
    fRefusedWindow = window;
    openDialog(window->settings());
}

void Connecting::openDialog(const ConnectionSettings& settings)
{
    if (!fDialog)
        makeDialog(settings);
    bringToFront(*fDialog);
}

void Connecting::makeDialog(const ConnectionSettings& settings)
{
    fDialog = new ConnectDialog(recentConnections(), settings);
    fDialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(fDialog, &ConnectDialog::connectRequested, this, &Connecting::connectTo);
    connect(fDialog, &ConnectDialog::refused, this, &Connecting::xOnRefused);
    connect(fDialog, &ConnectDialog::cancelled, this, &Connecting::xCancel);
    connect(fDialog, &ConnectDialog::passwordWanted, this, &Connecting::xReadPassword);
    connect(fDialog, &ConnectDialog::robotDeleted, &fPasswords, &KeptPasswords::forget);
    if (settings.keepsPassword && settings.password.empty() && !fAttempt)
        xReadPassword(settings);
    connect(fDialog, &QObject::destroyed, this, &Connecting::ended, Qt::QueuedConnection);
    standOver(*fDialog, fRefusedWindow ? fRefusedWindow.data() : QApplication::activeWindow());
}

void Connecting::connectTo(const ConnectionSettings& settings)
{
    prepareAttempt(settings);
    fAttempt->start();
}

/// The keyring may ask the user to unlock it first.
void Connecting::connectWithKeptPassword(const ConnectionSettings& settings)
{
    prepareAttempt(settings);
    fStep = tr("asking the desktop's keyring for the password");
    fPasswords.read(fAttempt->settings(),
                    [this, attempt = QPointer(fAttempt)](std::string& password) {
                        if (!attempt || attempt != fAttempt)
                            return; // called off
                        xOnStep(QString());
                        fAttempt->start(password);
                        if (fDialog)
                            fDialog->offerPassword(fAttempt->settings(), password);
                    });
}

void Connecting::prepareAttempt(const ConnectionSettings& settings)
{
    endAttempt();
    fWindowToReconnect = windowToConnectAgain(settings);
    fAttempt = new ConnectionAttempt(settings, this);
    connect(fAttempt, &ConnectionAttempt::stepChanged, this, &Connecting::xOnStep);
    connect(fAttempt, &ConnectionAttempt::succeeded, this, &Connecting::xOnConnected);
    connect(fAttempt, &ConnectionAttempt::failed, this, &Connecting::xOnFailed);
    if (fDialog)
        xShowProgress();
    else
        fShowTimer.start();
}

/// The window that asked for the dialog, if the user did not choose another robot there.
MainWindow* Connecting::windowToConnectAgain(const ConnectionSettings& settings) const
{
    // A closed one is hidden until it is deleted.
    const bool isAskedFor = fDialog && fRefusedWindow && fRefusedWindow->isVisible() &&
                            isSameAddress(fRefusedWindow->settings(), settings);
    return isAskedFor ? fRefusedWindow.data() : nullptr;
}

void Connecting::xShowProgress()
{
    openDialog(fAttempt->settings());
    showStep();
}

void Connecting::xOnStep(const QString& pStep)
{
    fStep = pStep;
    if (fDialog)
        showStep();
}

void Connecting::showStep()
{
    const QString robot = fAttempt->settings().robotText();
    fDialog->showConnecting(fStep.isEmpty() ? tr("Connecting to %1...").arg(robot)
                                            : tr("Connecting to %1: %2...").arg(robot, fStep));
}

void Connecting::xCancel()
{
    endAttempt();
    emit ended();
}

void Connecting::endAttempt()
{
    fShowTimer.stop();
    if (fAttempt) {
        fAttempt->disconnect(this);
        fAttempt->deleteLater(); // it may be what has called
    }
    fAttempt = nullptr;
    fStep.clear();
    if (fDialog)
        fDialog->showConnecting(QString());
}

void Connecting::xOnConnected()
{
    const boost::shared_ptr<ZoBroker> broker = fAttempt->broker();
    const ConnectionSettings settings = fAttempt->settings();
    MainWindow* const again =
        fWindowToReconnect && fWindowToReconnect->isVisible() ? fWindowToReconnect.data() : nullptr;
    try {
        // A window that connects again has links of its own; but none of them tells at once, as a
        // new broker does, whether the robot is there and lets the user in.
        if (again)
            again->reconnect(settings);
    } catch (const std::exception& error) {
        xOnFailed(QString::fromUtf8(error.what()));
        return;
    }
    endAttempt();
    emit connected(settings, broker, again);
}

void Connecting::xOnFailed(const QString& pCause)
{
    const ConnectionSettings settings = fAttempt->settings();
    endAttempt();
    openDialog(settings);
    fErrors.report(fDialog,
                   tr("There is no connection to %1.\n\n%2\n\nCheck the address and the port, what "
                      "the robot asks for (user, password, encryption), and whether it is on.")
                       .arg(settings.robotText(), pCause));
}

void Connecting::xOnRefused(const QString& pProblem)
{
    fErrors.report(fDialog, pProblem);
}

void Connecting::xReadPassword(const ConnectionSettings& pRobot)
{
    fPasswords.read(pRobot, [self = QPointer(this), pRobot](std::string& password) {
        if (self && self->fDialog)
            self->fDialog->offerPassword(pRobot, password);
    });
}

void Connecting::closeDialog()
{
    if (fDialog)
        fDialog->accept();
}

void Connecting::callOff()
{
    endAttempt();
    if (fDialog)
        fDialog->reject();
}
