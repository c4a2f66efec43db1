// SPDX-License-Identifier: MIT
#include "dialogs/connect_dialog.h"

#include <zo/error.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

ConnectDialog::ConnectDialog(const QList<ConnectionSettings>& recent,
                             const ConnectionSettings& settings, QWidget* parent)
    : QDialog(parent), fRecent(recent), fOther(settings.other)
{
    setWindowTitle(tr("Connect to a robot"));
    auto* form = new QFormLayout(this);
    setUpAddress(form);
    setUpUser(form);
    setUpTls(form);
    setUpButtons(form);
    fill(settings);
}

void ConnectDialog::setUpAddress(QFormLayout* form)
{
    fHostBox = new QComboBox(this);
    fHostBox->setObjectName("host");
    fHostBox->setEditable(true);
    fHostBox->setMinimumContentsLength(28);
    for (const ConnectionSettings& settings : fRecent)
        fHostBox->addItem(settings.addressText());
    fPortBox = new QSpinBox(this);
    fPortBox->setObjectName("port");
    fPortBox->setRange(1, ZoAddress::fHighestPort);
    form->addRow(tr("&Address:"), fHostBox);
    form->addRow(tr("&Port:"), fPortBox);
    connect(fHostBox, QOverload<int>::of(&QComboBox::activated), this,
            &ConnectDialog::xChooseRecent);
    connect(fHostBox, &QComboBox::editTextChanged, this, &ConnectDialog::xUpdate);
}

void ConnectDialog::setUpUser(QFormLayout* form)
{
    fUserEdit = new QLineEdit(this);
    fUserEdit->setObjectName("user");
    fUserEdit->setPlaceholderText(tr("the default user"));
    fPasswordEdit = new QLineEdit(this);
    fPasswordEdit->setObjectName("password");
    fPasswordEdit->setEchoMode(QLineEdit::Password);
    form->addRow(tr("&User:"), fUserEdit);
    form->addRow(tr("Pass&word:"), fPasswordEdit);
}

void ConnectDialog::setUpTls(QFormLayout* form)
{
    fTlsBox = new QCheckBox(tr("&Encrypt (TLS)"), this);
    fTlsBox->setObjectName("tls");
    fCaEdit = new QLineEdit(this);
    fCaEdit->setObjectName("ca");
    fCaEdit->setPlaceholderText(tr("those of the system"));
    fBrowseButton = new QPushButton(tr("&Browse..."), this);
    auto* row = new QHBoxLayout;
    row->addWidget(fCaEdit);
    row->addWidget(fBrowseButton);
    form->addRow(QString(), fTlsBox);
    form->addRow(tr("Authorities:"), row);
    connect(fTlsBox, &QCheckBox::toggled, this, &ConnectDialog::xUpdate);
    connect(fBrowseButton, &QPushButton::clicked, this, &ConnectDialog::xBrowse);
}

void ConnectDialog::setUpButtons(QFormLayout* form)
{
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    fConnectButton = buttons->addButton(tr("&Connect"), QDialogButtonBox::AcceptRole);
    fConnectButton->setDefault(true);
    form->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &ConnectDialog::xConnect);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void ConnectDialog::fill(const ConnectionSettings& settings)
{
    const QString host = QString::fromStdString(settings.address.host);
    fHostBox->setEditText(host.contains(':') ? '[' + host + ']' : host);
    fPortBox->setValue(settings.address.port);
    fUserEdit->setText(settings.user);
    fPassword = settings.password;
    fPasswordEdit->setText(QString::fromStdString(fPassword));
    fTlsBox->setChecked(settings.tls);
    fCaEdit->setText(settings.caFile);
    xUpdate();
}

void ConnectDialog::xChooseRecent(int pIndex)
{
    if (pIndex >= 0 && pIndex < fRecent.size())
        fill(fRecent.at(pIndex));
}

void ConnectDialog::xBrowse()
{
    const QString file = QFileDialog::getOpenFileName(
        this, tr("File of authorities"), fCaEdit->text(), tr("PEM files (*.pem *.crt)"));
    if (!file.isEmpty())
        fCaEdit->setText(file);
}

void ConnectDialog::xUpdate()
{
    fConnectButton->setEnabled(!fHostBox->currentText().trimmed().isEmpty());
    fCaEdit->setEnabled(fTlsBox->isChecked());
    fBrowseButton->setEnabled(fTlsBox->isChecked());
}

void ConnectDialog::xConnect()
{
    ConnectionSettings settings;
    try {
        settings.address = address();
    } catch (const ZoError& error) {
        emit refused(QString::fromStdString(error.toString()));
        return;
    }
    settings.user = fUserEdit->text();
    settings.password =
        fPasswordEdit->isModified() ? fPasswordEdit->text().toStdString() : fPassword;
    settings.tls = fTlsBox->isChecked();
    settings.caFile = settings.tls ? fCaEdit->text() : QString();
    settings.other = fOther;
    emit connectRequested(settings);
}

/// A port typed behind the host counts more than the one in the box.
ZoAddress ConnectDialog::address() const
{
    const std::string text = fHostBox->currentText().trimmed().toStdString();
    ZoAddress address = ZoAddress::fromText(text);
    if (address.toText() != text)
        address.port = fPortBox->value();
    return address;
}
