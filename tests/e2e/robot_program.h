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

    ZoMemoryProxy memory() const
    {
        const ZoAddress address = ZoAddress::fromText(fAddress.toStdString());
        return ZoMemoryProxy(ZoBroker::create("test", address.host, address.port, patientOptions())
                                 ->getProxy("ZoMemory", 0));
    }

private:
    QString fAddress;
};
