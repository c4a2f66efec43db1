// SPDX-License-Identifier: MIT
#pragma once

#include "support/machine_bench.h"

#include <chrono>
#include <string>

inline ZoBrokerOptions withoutPings()
{
    ZoBrokerOptions options;
    options.pingInterval = std::chrono::hours(1);
    return options;
}

/// A link that is up, to a robot so far away, on the bench.
struct LinkBench : MachineBench
{
    explicit LinkBench(const ZoBrokerOptions& options = withoutPings(),
                       std::chrono::milliseconds roundTrip = std::chrono::milliseconds(0))
        : MachineBench(options)
    {
        start();
        answerLookUp();
        connect();
        finishWrite();
        pass(roundTrip);
        receive("+PONG\r\n+OK\r\n");
    }
    void answerCall(const std::string& bytes)
    {
        finishWrite();
        receive(bytes);
    }
    /// What was sent since the greeting.
    std::string sent() const
    {
        const std::string all = written(1);
        return all.substr(all.find("TestBroker\r\n") + 12);
    }
};
