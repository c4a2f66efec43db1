// SPDX-License-Identifier: MIT
#pragma once

#include "support/contains.h"
#include "support/patience.h"
#include "support/request_for.h"

#include <zo/zo.h>

#include <chrono>
#include <functional>
#include <future>
#include <string>

/// Short words for tests that talk to a robot.

/// Options with which a slow test machine does not miss a deadline.
ZoBrokerOptions patientOptions();

/// The same without pings, and with this limit for every call: one that no test waits for, unless
/// it says so.
ZoBrokerOptions quietOptions(std::chrono::milliseconds limit = std::chrono::minutes(10));

/// A link to this port of the machine itself.
boost::shared_ptr<ZoBroker> linkTo(int port, const ZoBrokerOptions& options);

ZoMemoryProxy memoryOf(const boost::shared_ptr<ZoBroker>& broker);

/// Whether what another thread promises comes within a generous time.
template <class Result>
bool isReady(const std::future<Result>& future)
{
    return future.wait_for(std::chrono::milliseconds(patience)) == std::future_status::ready;
}

/// The text of the ZoError that `action` throws; empty when it throws none.
std::string errorOf(const std::function<void()>& action);
