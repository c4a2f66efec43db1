// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_settings.h"

#include <zo/broker.h>

#include <QObject>
#include <QPointer>
#include <QString>

#include <string>

class ConnectionAttempt;
class KeptPasswords;
class QInputDialog;

/// The way to one robot of a workspace: with the password that the desktop keeps for it, or else
/// with the one that the user gives when the robot asks. Its end calls it off, at any moment.
class RobotOpening : public QObject
{
    Q_OBJECT

public:
    RobotOpening(const ConnectionSettings& robot, KeptPasswords& passwords, QObject* parent);
    ~RobotOpening() override;

    /// To be called once. What comes of it is told later, not from within.
    void start();

    const ConnectionSettings& settings() const { return fSettings; }
    /// Connected, when there is no problem.
    const boost::shared_ptr<ZoBroker>& broker() const { return fBroker; }
    const QString& problem() const { return fProblem; }

signals:
    void ended();

private slots:
    void xConnect();
    void xOnSucceeded();
    void xOnFailed(const QString& pCause);
    void xOnPassword(const QString& pPassword);

private:
    void askForPassword();

    ConnectionSettings fSettings;
    KeptPasswords& fPasswords;
    QPointer<ConnectionAttempt> fAttempt;
    QPointer<QInputDialog> fDialog;
    boost::shared_ptr<ZoBroker> fBroker;
    QString fProblem;
};
