// SPDX-License-Identifier: MIT
#pragma once

#include <zo/export.h>
#include <zo/value.h>

#include <string>

/// A module of the middleware, in this process or on the robot, as its callers see it.
class ZO_EXPORT ZoProxy
{
public:
    virtual ~ZoProxy();

    /// Calls `method` with `arguments` and waits for its result. A call that fails throws
    /// ZoError. The library's own proxies may be called from any thread at any time.
    virtual ZoValue call(const std::string& method, const ZoValue& arguments) = 0;
};
