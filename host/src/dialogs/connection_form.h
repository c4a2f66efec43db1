// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_settings.h"

#include <QList>
#include <QWidget>

#include <optional>

class FileField;
class NodesField;
class QCheckBox;
class QComboBox;
class QFormLayout;
class QLineEdit;
class QSpinBox;

/// The fields that say how to reach a robot.
class ConnectionForm : public QWidget
{
    Q_OBJECT

public:
    /// `recent` is offered to choose from.
    ConnectionForm(const QList<ConnectionSettings>& recent, QWidget* parent);
    ~ConnectionForm() override;

    /// Shows `settings`; a password that was typed stays, and stands for theirs.
    void fill(const ConnectionSettings& settings);
    /// The password that is kept for `robot`, which is taken if that is still in the fields.
    void offerPassword(const ConnectionSettings& robot, const std::string& given);
    /// What is typed. Throws ZoError when that cannot be used.
    ConnectionSettings settings() const;
    /// Whether there is an address at all.
    bool hasAddress() const;

signals:
    /// The keyring may have it.
    void passwordWanted(const ConnectionSettings& robot);
    void changed();

private slots:
    void xChooseRecent(int pIndex);
    void xFollowAddress();
    void xUpdate();

private:
    void setUpAddress(QFormLayout* form);
    void setUpUser(QFormLayout* form);
    void setUpTls(QFormLayout* form);
    void setUpWay(QFormLayout* form);
    bool shows(const ConnectionSettings& robot) const;
    void dropPasswordOfAnother();
    kit::Secret password() const;

    const QList<ConnectionSettings> fRecent;
    ZoBrokerOptions fOther; ///< as given, with what has no field
    std::string fPassword;  ///< as given, which the field need not be able to show
    std::optional<ConnectionSettings> fKeptFor; ///< whose it is, if it was not typed
    QComboBox* fHostBox;
    QSpinBox* fPortBox;
    int fOwnPort = 0; ///< in that box when an address names none
    NodesField* fNodesField;
    QLineEdit* fPrefixEdit;
    QLineEdit* fUserEdit;
    QLineEdit* fPasswordEdit;
    QCheckBox* fKeepBox;
    QCheckBox* fTlsBox;
    FileField* fCaField;
    FileField* fCertField;
    FileField* fKeyField;
    QSpinBox* fTimeoutBox;
    QLineEdit* fJumpEdit;
};
