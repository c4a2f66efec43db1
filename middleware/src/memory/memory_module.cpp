// SPDX-License-Identifier: MIT
#include "memory/memory_module.h"

#include "memory/memory_arguments.h"
#include "memory/memory_methods.h"

#include <cstdint>
#include <utility>

namespace zo {

namespace {

/// As `getListAnswer` returns it.
ZoValue packed(ZoListAnswer answer)
{
    const std::chrono::nanoseconds arrived = answer.arrived.time_since_epoch();
    return ZoValue::fromElements(
        {std::move(answer.values), std::int64_t{arrived.count()}, answer.tooLarge});
}

} // namespace

ZoValue MemoryModule::call(const std::string& method, const ZoValue& arguments)
{
    if (method == getListDataMethod)
        return values(arguments).values;
    if (method == getListAnswerMethod)
        return packed(values(arguments));
    if (method == getDataListNameMethod)
        return names(endingOf(arguments));
    if (method == exchangeDataMethod) {
        const std::string& key = keyToSet(exchangeDataMethod, arguments);
        return exchange(key, textOf(key, arguments[1]));
    }
    if (method == setDataMethod) {
        const std::string& key = keyToSet(setDataMethod, arguments);
        store(key, textOf(key, arguments[1]));
    } else if (method == setListDataMethod) {
        checkPairs(arguments);
        storeAll(arguments);
    } else if (method == setTextMethod) {
        store(keyToSet(setTextMethod, arguments), textToSet(arguments));
    } else {
        throw error("has no method '" + method + "'");
    }
    return {};
}

} // namespace zo
