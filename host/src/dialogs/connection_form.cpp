// SPDX-License-Identifier: MIT
#include "dialogs/connection_form.h"

#include "connection/ssh_relay.h"
#include "connection/typed_addresses.h"
#include "dialogs/file_field.h"
#include "dialogs/nodes_field.h"

#include <kit/option_words.h>
#include <kit/password_file.h>

#include <zo/error.h>

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QSpinBox>

namespace {

/// What tells it from others to choose from.
QString nameOf(const ConnectionSettings& robot)
{
    return robot.user.isEmpty() ? robot.wayText()
                                : ConnectionForm::tr("%1 as %2").arg(robot.wayText(), robot.user);
}

} // namespace

ConnectionForm::ConnectionForm(const QList<ConnectionSettings>& recent, QWidget* parent)
    : QWidget(parent), fRecent(recent)
{
    auto* form = new QFormLayout(this);
    form->setContentsMargins(0, 0, 0, 0);
    setUpAddress(form);
    setUpUser(form);
    setUpTls(form);
    setUpWay(form);
    setFocusProxy(fHostBox);
    connect(fPortBox, QOverload<int>::of(&QSpinBox::valueChanged), this, &ConnectionForm::xUpdate);
    connect(fNodesField, &NodesField::changed, this, &ConnectionForm::xUpdate);
    for (QLineEdit* edit : {fPrefixEdit, fUserEdit, fJumpEdit})
        connect(edit, &QLineEdit::textChanged, this, &ConnectionForm::xUpdate);
}

ConnectionForm::~ConnectionForm()
{
    kit::wipe(fPassword);
}

void ConnectionForm::setUpAddress(QFormLayout* form)
{
    fHostBox = new QComboBox(this);
    fHostBox->setObjectName("host");
    fHostBox->setEditable(true);
    // What is typed is meant: an address that begins like another robot's is not that robot's.
    fHostBox->setCompleter(nullptr);
    fHostBox->setInsertPolicy(QComboBox::NoInsert);
    fHostBox->setMinimumContentsLength(28);
    for (const ConnectionSettings& settings : fRecent)
        fHostBox->addItem(nameOf(settings));
    fHostBox->setCurrentIndex(-1);
    fHostBox->setToolTip(tr("HOST or HOST:PORT. Of nodes of a cluster, or of sentinels, several "
                            "with commas between."));
    fPortBox = new QSpinBox(this);
    fPortBox->setObjectName("port");
    fPortBox->setRange(1, ZoAddress::fHighestPort);
    fNodesField = new NodesField(this);
    fPrefixEdit = new QLineEdit(this);
    fPrefixEdit->setObjectName("prefix");
    fPrefixEdit->setPlaceholderText(tr("none"));
    fPrefixEdit->setToolTip(tr("What the robot's keys begin with on a server of many robots, as "
                               "robot7/. Keys are shown without it."));
    form->addRow(tr("&Address:"), fHostBox);
    form->addRow(tr("&Port:"), fPortBox);
    form->addRow(tr("&Leads to:"), fNodesField);
    form->addRow(tr("Prefi&x:"), fPrefixEdit);
    connect(fHostBox, QOverload<int>::of(&QComboBox::activated), this,
            &ConnectionForm::xChooseRecent);
    connect(fHostBox, &QComboBox::editTextChanged, this, &ConnectionForm::xFollowAddress);
}

void ConnectionForm::setUpUser(QFormLayout* form)
{
    fUserEdit = new QLineEdit(this);
    fUserEdit->setObjectName("user");
    fUserEdit->setPlaceholderText(tr("the default user"));
    fPasswordEdit = new QLineEdit(this);
    fPasswordEdit->setObjectName("password");
    fPasswordEdit->setEchoMode(QLineEdit::Password);
    form->addRow(tr("&User:"), fUserEdit);
    form->addRow(tr("Pass&word:"), fPasswordEdit);
    fKeepBox = new QCheckBox(tr("Keep it in the desktop's keyri&ng"), this);
    fKeepBox->setObjectName("keep");
    form->addRow(QString(), fKeepBox);
}

void ConnectionForm::setUpTls(QFormLayout* form)
{
    fTlsBox = new QCheckBox(tr("&Encrypt (TLS)"), this);
    fTlsBox->setObjectName("tls");
    fCaField = new FileField(tr("File of authorities"), "ca", this);
    fCaField->setPlaceholder(tr("those of the system"));
    fCertField = new FileField(tr("Certificate to show"), "cert", this);
    fCertField->setPlaceholder(tr("none"));
    fKeyField = new FileField(tr("Key of the certificate"), "key", this);
    fKeyField->setPlaceholder(tr("none"));
    form->addRow(QString(), fTlsBox);
    form->addRow(tr("Auth&orities:"), fCaField);
    form->addRow(tr("Ce&rtificate:"), fCertField);
    form->addRow(tr("&Key:"), fKeyField);
    connect(fTlsBox, &QCheckBox::toggled, this, &ConnectionForm::xUpdate);
}

void ConnectionForm::setUpWay(QFormLayout* form)
{
    fTimeoutBox = new QSpinBox(this);
    fTimeoutBox->setObjectName("timeout");
    fTimeoutBox->setRange(0, kit::longestTime);
    fTimeoutBox->setSingleStep(500);
    fTimeoutBox->setSuffix(tr(" ms"));
    fTimeoutBox->setSpecialValueText(tr("for a local network"));
    fTimeoutBox->setToolTip(
        tr("The longest wait for a connection, and for an answer. A slow network needs more."));
    form->addRow(tr("T&ime-out:"), fTimeoutBox);
    fJumpEdit = new QLineEdit(this);
    fJumpEdit->setObjectName("ssh");
    fJumpEdit->setPlaceholderText(tr("USER@HOST; empty: directly"));
    fJumpEdit->setToolTip(tr("A host that leads to the robot, by ssh with your keys and agent."));
    form->addRow(tr("&By way of:"), fJumpEdit);
}

void ConnectionForm::fill(const ConnectionSettings& settings)
{
    fOther = settings.other;
    const QString host = QString::fromStdString(settings.address.host);
    const QString alone = host.contains(':') ? '[' + host + ']' : host;
    fHostBox->setEditText(fOther.furtherAddresses.empty() ? alone : settings.addressesText());
    fPortBox->setValue(settings.address.port);
    fNodesField->fill(fOther);
    fPrefixEdit->setText(settings.prefix);
    fUserEdit->setText(settings.user);
    fKeepBox->setChecked(settings.keepsPassword);
    fTlsBox->setChecked(settings.tls);
    fCaField->setFile(settings.caFile);
    fCertField->setFile(settings.certFile);
    fKeyField->setFile(settings.keyFile);
    fTimeoutBox->setValue(settings.timeout);
    fJumpEdit->setText(settings.jumpHost);
    // The last: until then the fields may show another robot, to which it does not go.
    if (!fPasswordEdit->isModified()) { // one that was typed is nobody else's to throw away
        kit::wipe(fPassword);
        fPassword = settings.password;
        fPasswordEdit->setText(QString::fromStdString(fPassword));
        fKeptFor.reset();
        // One that the command line gives without a robot is for whatever robot comes.
        if (!fPassword.empty() && !(settings.address == ConnectionSettings().address))
            fKeptFor = settings;
    }
    xUpdate();
    if (settings.keepsPassword && password().empty())
        emit passwordWanted(settings);
}

void ConnectionForm::offerPassword(const ConnectionSettings& robot, const std::string& given)
{
    if (!shows(robot) || !password().empty())
        return;
    fPassword = given;
    fPasswordEdit->setText(QString::fromStdString(given));
    fKeptFor = robot;
}

bool ConnectionForm::shows(const ConnectionSettings& robot) const
{
    try {
        return isSameRobot(settings(), robot);
    } catch (const ZoError&) {
        return false; // what is there now is no robot at all
    }
}

/// A password that came with a robot, or out of the keyring, goes to no robot but its own.
void ConnectionForm::dropPasswordOfAnother()
{
    if (!fKeptFor || fPasswordEdit->isModified() || shows(*fKeptFor))
        return;
    fKeptFor.reset();
    kit::wipe(fPassword);
    fPasswordEdit->clear();
}

ConnectionSettings ConnectionForm::settings() const
{
    ConnectionSettings settings;
    settings.other = fOther;
    settings.setAddresses(typedAddresses(fHostBox->currentText(), fPortBox->value()));
    fNodesField->store(settings.other);
    settings.prefix = fPrefixEdit->text().trimmed();
    ZoBrokerOptions::checkPrefix(settings.prefix.toStdString());
    settings.user = fUserEdit->text();
    settings.password = password();
    settings.keepsPassword = fKeepBox->isChecked();
    settings.tls = fTlsBox->isChecked();
    if (settings.tls) {
        settings.caFile = fCaField->file();
        settings.certFile = fCertField->file();
        settings.keyFile = fKeyField->file();
    }
    if (settings.certFile.isEmpty() != settings.keyFile.isEmpty())
        throw ZoError(tr("A certificate and its key need each other: choose both files, or none.")
                          .toStdString());
    settings.timeout = fTimeoutBox->value();
    settings.jumpHost = fJumpEdit->text().trimmed();
    if (!settings.jumpHost.isEmpty())
        checkJumpHost(settings.jumpHost.toStdString());
    checkNodes(settings);
    return settings;
}

kit::Secret ConnectionForm::password() const
{
    if (!fPasswordEdit->isModified())
        return kit::Secret(fPassword);
    std::string typed = fPasswordEdit->text().toStdString();
    const kit::WipedAtEnd wiped(typed);
    return kit::Secret(typed);
}

bool ConnectionForm::hasAddress() const
{
    return !fHostBox->currentText().trimmed().isEmpty();
}

void ConnectionForm::xChooseRecent(int pIndex)
{
    // The box takes one that is typed as a remembered one is spelled for a choice of that.
    if (fHostBox->lineEdit()->isModified())
        return;
    if (pIndex >= 0 && pIndex < fRecent.size())
        fill(fRecent.at(pIndex));
}

/// The box of the port shows what will be used, also while each address names its own.
void ConnectionForm::xFollowAddress()
{
    const int named = typedPort(fHostBox->currentText());
    if (fPortBox->isEnabledTo(this))
        fOwnPort = fPortBox->value();
    fPortBox->setValue(named > 0 ? named : fOwnPort);
    fPortBox->setEnabled(named == 0);
    fPortBox->setToolTip(named > 0 ? tr("The address names the port.") : QString());
    xUpdate();
}

void ConnectionForm::xUpdate()
{
    for (QWidget* field : {fCaField, fCertField, fKeyField})
        field->setEnabled(fTlsBox->isChecked());
    dropPasswordOfAnother();
    emit changed();
}
