// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_settings.h"

#include <zo/broker.h>

#include <QObject>
#include <QTimer>

/// One attempt to reach a robot, while the event loop runs on. Its end calls it off, at any moment.
class ConnectionAttempt : public QObject
{
    Q_OBJECT

public:
    static constexpr int fPollInterval = 20; ///< ms

    explicit ConnectionAttempt(const ConnectionSettings& settings, QObject* parent = nullptr);

    /// To be called once. What comes of it is told later, not from within.
    void start();
    /// The same, with this password.
    void start(const std::string& password);

    const ConnectionSettings& settings() const { return fSettings; }
    /// Connected, once `succeeded` says so.
    const boost::shared_ptr<ZoBroker>& broker() const { return fBroker; }

signals:
    /// What it is at, for the user: "looking up the address".
    void stepChanged(const QString& step);
    void succeeded();
    void failed(const QString& cause);

private slots:
    void xPoll();

private:
    void begin();
    void showStep(ZoLinkStatus::Step step);

    ConnectionSettings fSettings;
    boost::shared_ptr<ZoBroker> fBroker;
    QString fProblem; ///< why there is no broker
    ZoLinkStatus::Step fStep = ZoLinkStatus::Step::None;
    QTimer fTimer;
};
