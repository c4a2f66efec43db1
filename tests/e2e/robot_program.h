// SPDX-License-Identifier: MIT
#pragma once

#include "support/program.h"
#include "support/robot.h"

#include <QFile>
#include <QRegularExpression>

/// The simulated robot, started and awaited.
class RobotProgram : public Program
{
public:
    explicit RobotProgram(const QStringList& arguments = {}) : Program(TARVEK_ROBOT, arguments) {}

    /// False when it does not say where it listens.
    bool startAndWait()
    {
        start();
        fAddress = waitForLine("listening on ");
        const QRegularExpression line("^password in (.*)$", QRegularExpression::MultilineOption);
        fPasswordFile = line.match(QString::fromLocal8Bit(output())).captured(1);
        return !fAddress.isEmpty();
    }

    const QString& address() const { return fAddress; }

    /// Of the password that the robot made up; empty when it made none.
    const QString& passwordFile() const { return fPasswordFile; }
    std::string password() const
    {
        QFile file(fPasswordFile);
        return file.open(QIODevice::ReadOnly) ? file.readLine().trimmed().toStdString() : "";
    }

    ZoMemoryProxy memory() const { return memory(password()); }
    ZoMemoryProxy memory(const std::string& password) const
    {
        const ZoAddress address = ZoAddress::fromText(fAddress.toStdString());
        ZoBrokerOptions options = patientOptions();
        options.password = password;
        return ZoMemoryProxy(
            ZoBroker::create("test", address.host, address.port, options)->getProxy("ZoMemory", 0));
    }

private:
    QString fAddress;
    QString fPasswordFile;
};
