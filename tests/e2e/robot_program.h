// SPDX-License-Identifier: MIT
#pragma once

#include "support/program.h"
#include "support/robot.h"

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
        return !fAddress.isEmpty();
    }

    const QString& address() const { return fAddress; }

    ZoMemoryProxy memory(const std::string& password = {}) const
    {
        const ZoAddress address = ZoAddress::fromText(fAddress.toStdString());
        ZoBrokerOptions options = patientOptions();
        options.password = password;
        return ZoMemoryProxy(
            ZoBroker::create("test", address.host, address.port, options)->getProxy("ZoMemory", 0));
    }

private:
    QString fAddress;
};
