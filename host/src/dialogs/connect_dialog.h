// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_settings.h"

#include <QDialog>
#include <QList>

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLineEdit;
class QPushButton;
class QSpinBox;

/// Asks which robot to connect to. Stays open until somebody calls accept(): a failed attempt
/// keeps what was typed.
class ConnectDialog : public QDialog
{
    Q_OBJECT

public:
    /// `recent` is offered to choose from; `settings` stands in the fields at first.
    ConnectDialog(const QList<ConnectionSettings>& recent, const ConnectionSettings& settings,
                  QWidget* parent = nullptr);

signals:
    void connectRequested(const ConnectionSettings& settings);
    /// What was typed cannot be used; a sentence for the user.
    void refused(const QString& problem);

private slots:
    void xChooseRecent(int pIndex);
    void xBrowse();
    void xUpdate();
    void xConnect();

private:
    void setUpAddress(QFormLayout* form);
    void setUpUser(QFormLayout* form);
    void setUpTls(QFormLayout* form);
    void setUpButtons(QFormLayout* form);
    ZoAddress address() const;
    void fill(const ConnectionSettings& settings);

    QList<ConnectionSettings> fRecent;
    const ZoBrokerOptions fOther; ///< what the dialog does not ask for
    std::string fPassword;        ///< as given, which the field need not be able to show
    QComboBox* fHostBox;
    QSpinBox* fPortBox;
    QLineEdit* fUserEdit;
    QLineEdit* fPasswordEdit;
    QCheckBox* fTlsBox;
    QLineEdit* fCaEdit;
    QPushButton* fBrowseButton;
    QPushButton* fConnectButton;
};
