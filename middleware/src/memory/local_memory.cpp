// SPDX-License-Identifier: MIT
#include "memory/local_memory.h"

#include "memory/memory_arguments.h"
#include "memory/memory_methods.h"
#include "value/json.h"

#include <zo/error.h>

#include <mutex>

ZoValue LocalMemory::call(const std::string& method, const ZoValue& arguments)
{
    if (method == getListDataMethod)
        return values(arguments);
    if (method == getDataListNameMethod)
        return names();
    if (method == setDataMethod)
        store(keyToSet(setDataMethod, arguments), encodeJson(valueToSet(arguments)));
    else if (method == setListDataMethod)
        storeAll(arguments);
    else if (method == setTextMethod)
        store(keyToSet(setTextMethod, arguments), textToSet(arguments));
    else
        throw ZoError(std::string(memoryModuleName) + " of this process has no method '" + method +
                      "'");
    return {};
}

ZoValue LocalMemory::values(const ZoValue& request) const
{
    ZoValue found;
    found.arraySetSize(requestedCount(request));
    const std::shared_lock<std::shared_mutex> lock(fMutex);
    for (int i = 0; i < found.getSize(); ++i) {
        const auto entry = fValues.find(requestedKey(request, i));
        if (entry != fValues.end())
            found[i] = entry->second;
    }
    return found;
}

ZoValue LocalMemory::names() const
{
    std::vector<std::string> keys;
    const std::shared_lock<std::shared_mutex> lock(fMutex);
    keys.reserve(fValues.size());
    for (const auto& entry : fValues)
        keys.push_back(entry.first);
    return keys;
}

void LocalMemory::storeAll(const ZoValue& pairs)
{
    const int count = pairsToSet(pairs);
    std::vector<ZoValue> values;
    values.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        values.push_back(decodeJson(encodeJson(pairs[i][1])));
    const std::lock_guard<std::shared_mutex> lock(fMutex);
    for (int i = 0; i < pairs.getSize(); ++i)
        fValues[pairs[i][0].asString()] = std::move(values[static_cast<std::size_t>(i)]);
}

void LocalMemory::store(const std::string& key, const std::string& text)
{
    ZoValue value = decodeJson(text);
    const std::lock_guard<std::shared_mutex> lock(fMutex);
    fValues[key] = std::move(value);
}
