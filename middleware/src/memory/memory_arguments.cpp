// SPDX-License-Identifier: MIT
#include "memory/memory_arguments.h"

#include "memory/key_text.h"
#include "memory/memory_methods.h"
#include "value/json.h"

#include <zo/error.h>

namespace zo {

namespace {

bool isKeyAndMore(const ZoValue& pair)
{
    return pair.getSize() == 2 && pair[0].getType() == ZoValue::String;
}

} // namespace

int requestedCount(const ZoValue& request)
{
    if (request.getType() != ZoValue::Array)
        throw ZoError(std::string(getListDataMethod) + ": the request is no array");
    return request.getSize();
}

const std::string& requestedKey(const ZoValue& request, int index)
{
    const ZoValue& pair = request[index];
    if (!isKeyAndMore(pair) || pair[1].getType() != ZoValue::Int)
        throw ZoError(std::string(getListDataMethod) + ": element " + std::to_string(index) +
                      " of the request is not [key, 0]");
    return pair[0].asString();
}

std::string endingOf(const ZoValue& arguments)
{
    return arguments.getType() == ZoValue::String ? arguments.asString() : std::string();
}

void checkPairs(const ZoValue& pairs)
{
    const std::string method = setListDataMethod;
    if (pairs.getType() != ZoValue::Array)
        throw ZoError(method + ": the argument is no array");
    for (int i = 0; i < pairs.getSize(); ++i)
        if (!isKeyAndMore(pairs[i]))
            throw ZoError(method + ": element " + std::to_string(i) +
                          " of the argument is not [key, value]");
}

const std::string& keyToSet(const char* method, const ZoValue& arguments)
{
    if (!isKeyAndMore(arguments))
        throw ZoError(std::string(method) + ": the arguments are not [key, value]");
    return arguments[0].asString();
}

const std::string& textToSet(const ZoValue& arguments)
{
    if (arguments[1].getType() != ZoValue::String)
        throw ZoError(std::string(setTextMethod) + ": the second argument is no text");
    return arguments[1].asString();
}

std::string textOf(const std::string& key, const ZoValue& value)
{
    try {
        return encodeJson(value);
    } catch (const ZoError& error) {
        throw ZoError("value for " + quotedKey(key) + ": " + error.toString());
    }
}

} // namespace zo
