// SPDX-License-Identifier: MIT
#include "value/json.h"
#include "value/json_number.h"
#include "value/json_tree.h"

#include <limits>
#include <simdjson.h>

namespace zo {

namespace {

bool isJsonSpace(char byte)
{
    return byte == ' ' || byte == '\n' || byte == '\r' || byte == '\t';
}

std::string_view withoutOuterSpace(std::string_view text)
{
    while (!text.empty() && isJsonSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isJsonSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

bool readWord(std::string_view text, ZoValue& value)
{
    using Limits = std::numeric_limits<double>;
    if (text == "true" || text == "false")
        value = ZoValue(text == "true");
    else if (text == "null")
        value = ZoValue();
    else if (text == "NaN")
        value = ZoValue(Limits::quiet_NaN());
    else if (text == "Infinity")
        value = ZoValue(Limits::infinity());
    else if (text == "-Infinity")
        value = ZoValue(-Limits::infinity());
    else
        return false;
    return true;
}

/// Whether nothing in the inside of a string needs more than copying.
bool isPlainInside(std::string_view inside)
{
    for (const char byte : inside)
        if (static_cast<unsigned char>(byte) < 0x20U || byte == '"' || byte == '\\')
            return false;
    return simdjson::validate_utf8(inside.data(), inside.size());
}

bool readString(std::string_view text, ZoValue& value, std::int64_t& elements)
{
    if (text.size() < 2 || text.back() != '"')
        return false;
    const std::string_view inside = text.substr(1, text.size() - 2);
    if (!isPlainInside(inside))
        return readJsonTree(text, value, elements);
    value = ZoValue(std::string(inside));
    return true;
}

bool readJson(std::string_view text, ZoValue& value, std::int64_t& elements)
{
    if (text.empty())
        return false;
    switch (text.front()) {
    case '{':
        return false;
    case '[':
        return readJsonTree(text, value, elements);
    case '"':
        return readString(text, value, elements);
    default:
        return readJsonNumber(text, value) || readWord(text, value);
    }
}

} // namespace

ZoValue decodeJson(std::string_view text)
{
    std::int64_t elements = std::numeric_limits<std::int64_t>::max();
    return decodeJson(text, elements);
}

ZoValue decodeJson(std::string_view text, std::int64_t& elements)
{
    ZoValue value;
    std::int64_t left = elements;
    const bool isJson = readJson(withoutOuterSpace(text), value, left);
    if (left < 0)
        return {};
    if (!isJson)
        return ZoValue(std::string(text));
    elements = left;
    return value;
}

} // namespace zo
