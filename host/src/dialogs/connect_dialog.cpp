// SPDX-License-Identifier: MIT
#include "dialogs/connect_dialog.h"

#include "dialogs/check_dialog.h"
#include "dialogs/connection_form.h"
#include "dialogs/robot_list.h"

#include <kit/password_file.h>

#include <zo/error.h>

#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>

ConnectDialog::ConnectDialog(const QList<ConnectionSettings>& recent,
                             const ConnectionSettings& settings, QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(tr("Connect to a robot"));
    setUpFields(recent);
    fProgress = new QLabel(this);
    fProgress->setObjectName("progress");
    fProgress->setTextFormat(Qt::PlainText);
    fProgress->setWordWrap(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(fFields);
    layout->addWidget(fProgress);
    layout->addWidget(makeButtons());
    connect(fForm, &ConnectionForm::changed, this, &ConnectDialog::xUpdate);
    connect(fForm, &ConnectionForm::passwordWanted, this, &ConnectDialog::passwordWanted);
    connect(fRobots, &RobotList::chosen, this, &ConnectDialog::xChoose);
    connect(fRobots, &RobotList::deleted, this, &ConnectDialog::robotDeleted);
    fForm->fill(settings);
    fRobots->refresh(savedNameOf(settings));
    fForm->setFocus();
}

void ConnectDialog::setUpFields(const QList<ConnectionSettings>& recent)
{
    fFields = new QWidget(this);
    fRobots = new RobotList(fFields);
    fForm = new ConnectionForm(recent, fFields);
    auto* layout = new QHBoxLayout(fFields);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(fRobots, 1);
    layout->addWidget(fForm, 2);
}

QDialogButtonBox* ConnectDialog::makeButtons()
{
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    fTestButton = addButton(buttons, tr("&Test..."), "test");
    fSaveButton = addButton(buttons, tr("&Save..."), "save");
    fConnectButton = buttons->addButton(tr("&Connect"), QDialogButtonBox::AcceptRole);
    fConnectButton->setDefault(true);
    connect(fTestButton, &QPushButton::clicked, this, &ConnectDialog::xTest);
    connect(fSaveButton, &QPushButton::clicked, this, &ConnectDialog::xSave);
    connect(buttons, &QDialogButtonBox::accepted, this, &ConnectDialog::xConnect);
    connect(buttons, &QDialogButtonBox::rejected, this, &ConnectDialog::reject);
    return buttons;
}

QPushButton* ConnectDialog::addButton(QDialogButtonBox* buttons, const QString& text,
                                      const char* name)
{
    QPushButton* button = buttons->addButton(text, QDialogButtonBox::ActionRole);
    button->setObjectName(name);
    button->setAutoDefault(false); // Enter connects
    return button;
}

void ConnectDialog::xChoose(const SavedRobot& pRobot)
{
    fForm->fill(pRobot.settings);
}

void ConnectDialog::offerPassword(const ConnectionSettings& robot, const std::string& password)
{
    fForm->offerPassword(robot, password);
}

void ConnectDialog::xUpdate()
{
    const bool isReady = !fIsConnecting && fForm->hasAddress();
    for (QPushButton* button : {fConnectButton, fTestButton, fSaveButton})
        button->setEnabled(isReady);
}

void ConnectDialog::showConnecting(const QString& text)
{
    const bool wasConnecting = std::exchange(fIsConnecting, !text.isEmpty());
    fProgress->setText(text);
    if (wasConnecting == fIsConnecting)
        return;
    if (fIsConnecting)
        fFocus = focusWidget() ? focusWidget() : fForm;
    fFields->setEnabled(!fIsConnecting);
    xUpdate();
    if (!fIsConnecting && fFocus)
        fFocus->setFocus();
}

void ConnectDialog::reject()
{
    if (fIsConnecting)
        emit cancelled();
    else
        QDialog::reject();
}

void ConnectDialog::closeEvent(QCloseEvent* event)
{
    if (fIsConnecting)
        emit cancelled();
    QDialog::closeEvent(event);
}

/// Has `act` done with what is typed, if that can be used.
void ConnectDialog::withSettings(const std::function<void(const ConnectionSettings&)>& act)
{
    ConnectionSettings settings;
    try {
        settings = fForm->settings();
    } catch (const ZoError& error) {
        emit refused(QString::fromStdString(error.toString()));
        return;
    }
    act(settings);
}

void ConnectDialog::xConnect()
{
    withSettings([this](const ConnectionSettings& settings) { emit connectRequested(settings); });
}

void ConnectDialog::xTest()
{
    withSettings([this](const ConnectionSettings& settings) {
        auto* dialog = new CheckDialog(settings, this);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->open();
    });
}

void ConnectDialog::xSave()
{
    withSettings([this](ConnectionSettings settings) {
        kit::wipe(settings.password);
        auto* dialog = new QInputDialog(this);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setWindowTitle(tr("Save the robot"));
        dialog->setLabelText(tr("Name of the robot. One that has this name already is replaced."));
        const QString name = savedNameOf(settings, fRobots->current());
        dialog->setTextValue(name.isEmpty() ? fRobots->current() : name);
        connect(dialog, &QInputDialog::textValueSelected, this,
                [this, settings](const QString& chosen) {
                    fRobots->refresh(saveRobot({chosen, settings}));
                });
        dialog->open();
    });
}
