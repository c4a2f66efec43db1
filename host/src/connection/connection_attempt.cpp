// SPDX-License-Identifier: MIT
#include "connection/connection_attempt.h"

#include <kit/password_file.h>

namespace {

QString nameOf(ZoLinkStatus::Step step)
{
    switch (step) {
    case ZoLinkStatus::Step::None:
        break;
    case ZoLinkStatus::Step::LookUp:
        return ConnectionAttempt::tr("looking up the address");
    case ZoLinkStatus::Step::Connection:
        return ConnectionAttempt::tr("connecting");
    case ZoLinkStatus::Step::Tls:
        return ConnectionAttempt::tr("setting up the encryption");
    case ZoLinkStatus::Step::Login:
        return ConnectionAttempt::tr("logging in");
    }
    return ConnectionAttempt::tr("trying");
}

} // namespace

ConnectionAttempt::ConnectionAttempt(const ConnectionSettings& settings, QObject* parent)
    : QObject(parent), fSettings(settings)
{
    fTimer.setInterval(fPollInterval);
    connect(&fTimer, &QTimer::timeout, this, &ConnectionAttempt::xPoll);
}

void ConnectionAttempt::start()
{
    try {
        begin();
    } catch (const std::exception& error) {
        fProblem = QString::fromUtf8(error.what());
    }
    fTimer.start();
}

void ConnectionAttempt::start(const std::string& password)
{
    fSettings.password = password;
    start();
}

void ConnectionAttempt::begin()
{
    fSettings.openWay();
    ZoBrokerOptions options = fSettings.brokerOptions();
    const kit::WipedAtEnd wiped(options.password); // the broker has its own
    refuseUnreadableFiles(fSettings);
    fBroker =
        ZoBroker::begin("TarvekDesktop", fSettings.address.host, fSettings.address.port, options);
}

void ConnectionAttempt::xPoll()
{
    bool isConnected = false;
    if (fBroker) {
        const ZoLinkStatus status = fBroker->linkStatus();
        if (status.opening)
            return showStep(status.step);
        fProblem = QString::fromStdString(status.cause);
        isConnected = status.connected;
    }
    fTimer.stop();
    if (isConnected)
        emit succeeded();
    else
        emit failed(fProblem + endWithWordsOfSsh(fSettings));
}

void ConnectionAttempt::showStep(ZoLinkStatus::Step step)
{
    if (step == fStep)
        return;
    fStep = step;
    const QString name = nameOf(step);
    emit stepChanged(fSettings.relay ? tr("%1 by way of %2").arg(name, fSettings.jumpHost) : name);
}
