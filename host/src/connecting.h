// SPDX-License-Identifier: MIT
#pragma once

#include "dialogs/connect_dialog.h"

#include <boost/shared_ptr.hpp>

#include <QObject>
#include <QPointer>
#include <QTimer>

class ConnectionAttempt;
class ErrorReporter;
class KeptPasswords;
class MainWindow;
class ZoBroker;

/// The way to a robot that the user has chosen, one at a time: the connect dialog, and the attempt
/// to connect, of which the dialog tells when it takes long or fails.
class Connecting : public QObject
{
    Q_OBJECT

public:
    /// Both outlive it.
    Connecting(KeptPasswords& passwords, ErrorReporter& errors);
    ~Connecting() override;

    ConnectDialog* dialog() const { return fDialog.data(); }
    bool isUnderWay() const { return fAttempt != nullptr; }
    bool isOver() const { return !fDialog && !fAttempt; }

    /// Shows the dialog; with `settings`, unless it is there already.
    void ask(const ConnectionSettings& settings);
    /// Shows it for the robot of that window, which is to be connected again, panels and all.
    void askAgainFor(MainWindow* window);
    /// Begins to connect; an attempt that is under way is called off.
    void connectTo(const ConnectionSettings& settings);
    /// The same, with the password that the desktop's keyring has.
    void connectWithKeptPassword(const ConnectionSettings& settings);
    void closeDialog();
    void callOff();

signals:
    /// There is a robot: for the window that asked for it, which has taken it, or for a new one.
    /// Somebody closes the dialog then.
    void connected(const ConnectionSettings& settings, const boost::shared_ptr<ZoBroker>& broker,
                   MainWindow* again);
    /// The user has changed their mind, or the dialog has gone.
    void ended();

private slots:
    void xOnRefused(const QString& pProblem);
    void xShowProgress();
    void xReadPassword(const ConnectionSettings& pRobot);
    void xOnStep(const QString& pStep);
    void xCancel();
    void xOnConnected();
    void xOnFailed(const QString& pCause);

private:
    void openDialog(const ConnectionSettings& settings);
    void makeDialog(const ConnectionSettings& settings);
    void prepareAttempt(const ConnectionSettings& settings);
    void endAttempt();
    void showStep();
    MainWindow* windowToConnectAgain(const ConnectionSettings& settings) const;

    KeptPasswords& fPasswords;
    ErrorReporter& fErrors;
    QPointer<ConnectDialog> fDialog;
    QPointer<MainWindow> fRefusedWindow;     ///< that `fDialog` is for; null: for a new one
    ConnectionAttempt* fAttempt = nullptr;   ///< null: none is under way
    QPointer<MainWindow> fWindowToReconnect; ///< that it is for; null: for a new one
    QString fStep;                           ///< that it is at
    QTimer fShowTimer;
};
