// SPDX-License-Identifier: MIT
#pragma once

#include <zo/memory_proxy.h>
#include <zo/proxy.h>

#include <boost/make_shared.hpp>

#include <functional>
#include <string>
#include <utility>
#include <vector>

/// A robot's memory that answers as the test says, and records what it was asked.
class FakeMemory : public ZoProxy
{
public:
    using Answer = std::function<ZoValue(const ZoValue& arguments)>;

    ZoValue call(const std::string& method, const ZoValue& arguments) override
    {
        calls.emplace_back(method, arguments);
        return answer(arguments);
    }

    boost::shared_ptr<ZoMemoryProxy> proxy()
    {
        // The test owns the memory: it outlives the proxy.
        return boost::make_shared<ZoMemoryProxy>(
            boost::shared_ptr<ZoProxy>(this, [](const ZoProxy*) {}));
    }

    std::vector<std::pair<std::string, ZoValue>> calls;
    Answer answer = echo;

    /// As many values as were asked for: each key's own name.
    static ZoValue echo(const ZoValue& request)
    {
        ZoValue reply;
        reply.arraySetSize(request.getSize());
        for (int i = 0; i < request.getSize(); ++i)
            reply[i] = request[i][0];
        return reply;
    }
};
