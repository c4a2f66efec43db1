// SPDX-License-Identifier: MIT
#include "workspace/robot_opening.h"

#include "connection/connection_attempt.h"
#include "robots/kept_passwords.h"

#include <QInputDialog>
#include <QLabel>
#include <QStringList>

#include <memory>

namespace {

/// Who could read on the way what is sent in clear; empty: nobody.
QString listenersTo(const ConnectionSettings& robot)
{
    if (robot.tls)
        return {};
    return robot.jumpHost.isEmpty()
               ? RobotOpening::tr("The way there is not encrypted: whoever listens on it can read "
                                  "the password.")
               : RobotOpening::tr("The way from %1 on is not encrypted: whoever listens on it can "
                                  "read the password.")
                     .arg(robot.jumpHost);
}

} // namespace

RobotOpening::RobotOpening(const ConnectionSettings& robot, KeptPasswords& passwords,
                           QObject* parent)
    : QObject(parent), fSettings(robot), fPasswords(passwords)
{
    fSettings.keepsPassword = KeptPasswords::isWantedFor(robot);
}

RobotOpening::~RobotOpening()
{
    delete fDialog;
}

void RobotOpening::start()
{
    if (!fSettings.keepsPassword) {
        xConnect();
        return;
    }
    const QPointer<RobotOpening> self(this);
    fPasswords.read(fSettings, [self](std::string& password) {
        if (!self)
            return; // called off
        self->fSettings.password = password;
        self->xConnect();
    });
}

void RobotOpening::xConnect()
{
    fAttempt = new ConnectionAttempt(fSettings, this);
    connect(fAttempt, &ConnectionAttempt::succeeded, this, &RobotOpening::xOnSucceeded);
    connect(fAttempt, &ConnectionAttempt::failed, this, &RobotOpening::xOnFailed);
    fAttempt->start();
}

void RobotOpening::xOnSucceeded()
{
    fBroker = fAttempt->broker();
    fSettings = fAttempt->settings(); // with the way there that it has made
    fProblem.clear();
    emit ended();
}

void RobotOpening::xOnFailed(const QString& pCause)
{
    fProblem = pCause;
    const auto& broker = fAttempt->broker();
    const bool isRefused = broker && broker->linkStatus().refused;
    fAttempt->deleteLater(); // it is what has called
    if (isRefused)
        askForPassword();
    else
        emit ended();
}

/// Once the user gives none, that is the end.
void RobotOpening::askForPassword()
{
    fDialog = new QInputDialog;
    fDialog->setObjectName("workspacePassword");
    fDialog->setAttribute(Qt::WA_DeleteOnClose);
    fDialog->setWindowTitle(tr("Password"));
    const QString question =
        fSettings.user.isEmpty()
            ? tr("Password for the robot %1:").arg(fSettings.wayText())
            : tr("Password of \"%1\" for the robot %2:").arg(fSettings.user, fSettings.wayText());
    QStringList parts{fProblem, listenersTo(fSettings), question};
    parts.removeAll(QString());
    fDialog->setLabelText(parts.join("\n\n"));
    for (QLabel* label : fDialog->findChildren<QLabel*>())
        label->setTextFormat(Qt::PlainText); // some of it is the robot's
    fDialog->setTextEchoMode(QLineEdit::Password);
    connect(fDialog, &QInputDialog::textValueSelected, this, &RobotOpening::xOnPassword);
    connect(fDialog, &QDialog::rejected, this, &RobotOpening::ended);
    fDialog->open();
}

void RobotOpening::xOnPassword(const QString& pPassword)
{
    std::string typed = pPassword.toStdString();
    const kit::WipedAtEnd wiped(typed);
    fSettings.password = typed;
    xConnect();
}
