// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_settings.h"

#include <QDialog>
#include <QList>
#include <QPointer>

#include <functional>

class ConnectionForm;
class QDialogButtonBox;
class QLabel;
class QPushButton;
class RobotList;
struct SavedRobot;

/// Asks which robot to connect to. Stays open until somebody calls accept(): a failed attempt
/// keeps what was typed.
class ConnectDialog : public QDialog
{
    Q_OBJECT

public:
    /// `recent` is offered to choose from; `settings` stands in the fields at first.
    ConnectDialog(const QList<ConnectionSettings>& recent, const ConnectionSettings& settings,
                  QWidget* parent = nullptr);

    /// What is going on until somebody calls this with an empty text, or accept(): the fields
    /// cannot be changed meanwhile.
    void showConnecting(const QString& text);

    /// The password that is kept for `robot`.
    void offerPassword(const ConnectionSettings& robot, const std::string& password);

public slots:
    /// While connecting, cancels that only.
    void reject() override;

signals:
    void cancelled(); ///< connecting, that is
    void connectRequested(const ConnectionSettings& settings);
    /// The password of `robot`, which is kept somewhere.
    void passwordWanted(const ConnectionSettings& robot);
    /// The user has deleted that robot from those that are saved.
    void robotDeleted(const ConnectionSettings& robot);
    /// What was typed cannot be used; a sentence for the user.
    void refused(const QString& problem);

protected:
    void closeEvent(QCloseEvent* event) override;

private slots:
    void xChoose(const SavedRobot& pRobot);
    void xUpdate();
    void xConnect();
    void xTest();
    void xSave();

private:
    void setUpFields(const QList<ConnectionSettings>& recent);
    QDialogButtonBox* makeButtons();
    QPushButton* addButton(QDialogButtonBox* buttons, const QString& text, const char* name);
    void withSettings(const std::function<void(const ConnectionSettings& settings)>& act);

    QWidget* fFields;
    RobotList* fRobots;
    ConnectionForm* fForm;
    QPushButton* fConnectButton;
    QPushButton* fTestButton;
    QPushButton* fSaveButton;
    QLabel* fProgress;
    bool fIsConnecting = false;
    QPointer<QWidget> fFocus; ///< who had the keyboard before
};
