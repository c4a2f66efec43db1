// SPDX-License-Identifier: MIT
#include "memory/local_memory.h"

#include "memory/key_text.h"
#include "memory/memory_arguments.h"
#include "memory/memory_methods.h"
#include "value/json.h"

#include <chrono>
#include <mutex>
#include <utility>

namespace zo {

ZoListAnswer LocalMemory::values(const ZoValue& request)
{
    ZoValue found;
    found.arraySetSize(requestedCount(request));
    const std::shared_lock<std::shared_mutex> lock(fMutex);
    for (int i = 0; i < found.getSize(); ++i) {
        const auto entry = fValues.find(requestedKey(request, i));
        if (entry != fValues.end())
            found[i] = entry->second;
    }
    return {std::move(found), std::chrono::steady_clock::now(), {}};
}

ZoValue LocalMemory::names(const std::string& ending)
{
    std::vector<std::string> keys;
    const std::shared_lock<std::shared_mutex> lock(fMutex);
    keys.reserve(fValues.size());
    for (const auto& entry : fValues)
        if (endsWith(entry.first, ending))
            keys.push_back(entry.first);
    return keys;
}

void LocalMemory::storeAll(const ZoValue& pairs)
{
    const int count = pairs.getSize();
    std::vector<ZoValue> values;
    values.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        values.push_back(decodeJson(textOf(pairs[i][0].asString(), pairs[i][1])));
    const std::lock_guard<std::shared_mutex> lock(fMutex);
    for (int i = 0; i < count; ++i)
        fValues[pairs[i][0].asString()] = std::move(values[static_cast<std::size_t>(i)]);
}

void LocalMemory::store(const std::string& key, const std::string& text)
{
    ZoValue value = decodeJson(text);
    const std::lock_guard<std::shared_mutex> lock(fMutex);
    fValues[key] = std::move(value);
}

ZoValue LocalMemory::exchange(const std::string& key, const std::string& text)
{
    ZoValue value = decodeJson(text);
    const std::lock_guard<std::shared_mutex> lock(fMutex);
    return std::exchange(fValues[key], std::move(value));
}

ZoError LocalMemory::error(const std::string& problem) const
{
    return ZoError(std::string(memoryModuleName) + " of this process " + problem);
}

} // namespace zo
