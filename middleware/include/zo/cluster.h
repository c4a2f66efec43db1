// SPDX-License-Identifier: MIT
#pragma once

#include <zo/address.h>
#include <zo/broker_options.h>
#include <zo/export.h>

#include <vector>

/// What a cluster of servers tells of itself, for programs that look after all robots in it. A
/// broker finds the node of its own robot by itself.
class ZO_EXPORT ZoCluster
{
public:
    /// The nodes that take writes, 16 of them at most, in the order of their addresses' texts.
    /// `robot` and the further addresses of `options` are asked one after the other until one
    /// answers; empty when that is no node of a cluster. Takes `connectTimeout` at most for each
    /// address and each answer, and as long as the system's look-up. Throws ZoError, which names
    /// the address and the cause, when none answers, and when one refuses the login or to tell.
    static std::vector<ZoAddress> masters(const ZoAddress& robot, const ZoBrokerOptions& options);
};
