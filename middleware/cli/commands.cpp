// SPDX-License-Identifier: MIT
#include "commands.h"

#include <kit/escape.h>
#include <kit/output.h>

#include <zo/error.h>
#include <zo/memory_proxy.h>

#include <algorithm>

void listKeys(ZoMemoryProxy& memory, const std::string& part, kit::Output& output)
{
    std::vector<std::string> keys = memory.getDataListName();
    std::sort(keys.begin(), keys.end());
    for (const std::string& key : keys)
        if (key.find(part) != std::string::npos)
            output.add(kit::escaped(key) + "\n");
    output.flush();
}

void printValues(ZoMemoryProxy& memory, const std::vector<std::string>& keys, kit::Output& output)
{
    const ZoValue values = valuesOf(memory, requestOf(keys));
    for (int i = 0; i < values.getSize(); ++i)
        output.add(recordOf(keys[static_cast<std::size_t>(i)], values[i]));
    output.flush();
}

ZoValue requestOf(const std::vector<std::string>& keys)
{
    ZoValue request;
    request.arraySetSize(static_cast<int>(keys.size()));
    for (int i = 0; i < request.getSize(); ++i) {
        request[i].arraySetSize(2);
        request[i][0] = keys[static_cast<std::size_t>(i)];
        request[i][1] = 0;
    }
    return request;
}

ZoValue valuesOf(ZoMemoryProxy& memory, const ZoValue& request)
{
    ZoValue values = memory.getListData(request);
    if (values.getSize() != request.getSize())
        throw ZoError("the robot sent " + std::to_string(values.getSize()) + " values for " +
                      std::to_string(request.getSize()) + " keys");
    return values;
}

std::string recordOf(const std::string& key, const ZoValue& value)
{
    return kit::escaped(key) + "\t" + ZoValue::typeName(value.getType()) + "\t" +
           kit::escaped(value.toString(ZoWhole)) + "\n";
}
