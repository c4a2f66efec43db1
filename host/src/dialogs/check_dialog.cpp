// SPDX-License-Identifier: MIT
#include "dialogs/check_dialog.h"

#include <QDialogButtonBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

using Subject = ZoCheck::Subject;

QString wordFor(ZoCheck::Outcome outcome)
{
    switch (outcome) {
    case ZoCheck::Outcome::Ok:
        return CheckDialog::tr("ok");
    case ZoCheck::Outcome::Failed:
        return CheckDialog::tr("failed");
    case ZoCheck::Outcome::Skipped:
        break;
    }
    return CheckDialog::tr("skipped");
}

QString nameOf(Subject subject)
{
    switch (subject) {
    case Subject::LookUp:
        return CheckDialog::tr("look-up");
    case Subject::Connection:
        return CheckDialog::tr("connection");
    case Subject::Tls:
        return CheckDialog::tr("encryption");
    case Subject::Answer:
        return CheckDialog::tr("answer");
    case Subject::Readiness:
        return CheckDialog::tr("readiness");
    case Subject::Login:
        return CheckDialog::tr("login");
    case Subject::Node:
        return CheckDialog::tr("node");
    case Subject::Rights:
        return CheckDialog::tr("rights");
    case Subject::Server:
        return CheckDialog::tr("server");
    case Subject::Keys:
        return CheckDialog::tr("keys");
    case Subject::RoundTrip:
        return CheckDialog::tr("round trip");
    case Subject::Notices:
        return CheckDialog::tr("notices");
    }
    return {};
}

/// What to do when it failed; empty: the cause says it all.
QString adviceFor(Subject subject, bool hasTls)
{
    switch (subject) {
    case Subject::LookUp:
        return CheckDialog::tr("Check the name, or enter the address itself.");
    case Subject::Connection:
        return CheckDialog::tr("Is the robot on, does its memory listen to this network at this "
                               "port, and does no firewall stand between?");
    case Subject::Tls:
        return CheckDialog::tr("Does the robot speak TLS at this port? Is the file of authorities "
                               "that of the one who signed its certificate?");
    case Subject::Answer:
        return hasTls ? CheckDialog::tr("Is it a robot's memory, and does it want to see a "
                                        "certificate?")
                      : CheckDialog::tr("Is it a robot's memory, does it hang, or does it want "
                                        "encryption?");
    case Subject::Readiness:
        return CheckDialog::tr("Try again in a while.");
    case Subject::Login:
        return CheckDialog::tr("Check user and password.");
    case Subject::Rights:
        return CheckDialog::tr("The robot's access list must allow this user SCAN, MGET, and to "
                               "read the keys.");
    default:
        return {};
    }
}

} // namespace

CheckDialog::CheckDialog(const ConnectionSettings& settings, QWidget* parent)
    : QDialog(parent),
      fHasTls(settings.tls),
      fCheck(new RobotCheck(this)),
      fText(new QPlainTextEdit(this)),
      fButtons(new QDialogButtonBox(QDialogButtonBox::Cancel, this))
{
    setWindowTitle(tr("Test of %1").arg(settings.robotText()));
    resize(640, 360);
    fText->setReadOnly(true);
    fText->setObjectName("steps");
    fText->setPlaceholderText(tr("Looking up the address..."));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(fText);
    layout->addWidget(fButtons);
    connect(fButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(fCheck, &RobotCheck::stepDone, this, &CheckDialog::xShowStep);
    connect(fCheck, &RobotCheck::finished, this, &CheckDialog::xFinish);
    fCheck->start(settings);
}

void CheckDialog::xShowStep(const ZoCheck::Step& pStep)
{
    QString line =
        tr("%1 - %2: %3")
            .arg(wordFor(pStep.outcome), nameOf(pStep.subject), QString::fromStdString(pStep.text));
    const QString advice = adviceFor(pStep.subject, fHasTls);
    if (pStep.outcome == ZoCheck::Outcome::Failed && !advice.isEmpty())
        line += "\n    " + advice;
    fText->appendPlainText(line);
}

void CheckDialog::xFinish(bool pIsGood, const QString& pProblem)
{
    if (!pProblem.isEmpty())
        fText->appendPlainText(pProblem);
    fText->appendPlainText(pIsGood ? tr("\nAll that a panel needs works.")
                                   : tr("\nA panel would not work with this robot."));
    fButtons->setStandardButtons(QDialogButtonBox::Close);
    fButtons->button(QDialogButtonBox::Close)->setFocus();
}
