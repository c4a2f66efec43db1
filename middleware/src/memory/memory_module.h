// SPDX-License-Identifier: MIT
#pragma once

#include <zo/error.h>
#include <zo/list_answer.h>
#include <zo/proxy.h>

#include <string>

namespace zo {

/// The module "ZoMemory" as its callers see it, wherever the values are: finds the operation that
/// a method's name stands for, and checks what it was handed.
class MemoryModule : public ZoProxy
{
public:
    ZoValue call(const std::string& method, const ZoValue& arguments) final;

private:
    /// The values of the keys in `request`, which is read with `requestedCount` and `requestedKey`,
    /// and when they came; without what has changed.
    virtual ZoListAnswer values(const ZoValue& request) = 0;
    /// The names of all keys that end with `ending`, each once.
    virtual ZoValue names(const std::string& ending) = 0;
    virtual void store(const std::string& key, const std::string& text) = 0;
    /// The same; returns what was there before.
    virtual ZoValue exchange(const std::string& key, const std::string& text) = 0;
    /// `pairs` is an array of arrays [key, value].
    virtual void storeAll(const ZoValue& pairs) = 0;
    /// What is thrown when `problem` is to be said of this module: "has no method ...".
    virtual ZoError error(const std::string& problem) const = 0;
};

} // namespace zo
