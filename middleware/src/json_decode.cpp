#include "json.h"
#include "json_number.h"
#include "json_tree.h"

#include <limits>
#include <simdjson.h>

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

bool readString(std::string_view text, ZoValue& value)
{
    if (text.size() < 2 || text.back() != '"')
        return false;
    const std::string_view inside = text.substr(1, text.size() - 2);
    if (!isPlainInside(inside))
        return readJsonTree(text, value);
    value = ZoValue(std::string(inside));
    return true;
}

bool readJson(std::string_view text, ZoValue& value)
{
    if (text.empty())
        return false;
    switch (text.front()) {
    case '{':
        return false;
    case '[':
        return readJsonTree(text, value);
    case '"':
        return readString(text, value);
    default:
        return readJsonNumber(text, value) || readWord(text, value);
    }
}

} // namespace

ZoValue decodeJson(std::string_view text)
{
    ZoValue value;
    if (!readJson(withoutOuterSpace(text), value))
        value = ZoValue(std::string(text));
    return value;
}
