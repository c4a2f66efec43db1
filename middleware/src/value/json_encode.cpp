// SPDX-License-Identifier: MIT
#include "value/hex.h"
#include "value/json.h"
#include "value/number_text.h"

#include <zo/error.h>

#include <cmath>
#include <simdjson.h>

namespace zo {

namespace {

void appendFloat(double number, std::string& text)
{
    const std::size_t start = text.size();
    appendNumber(number, text);
    if (text.find_first_of(".en", start) == std::string::npos)
        text += ".0"; // else it would read back as an int
}

/// How a control character, a quote or a backslash is written inside a string.
void appendEscaped(char byte, std::string& text)
{
    static constexpr std::string_view plain = "\"\\\b\f\n\r\t";
    static constexpr char letters[] = "\"\\bfnrt";
    const std::size_t found = plain.find(byte);
    if (found != std::string_view::npos) {
        text += '\\';
        text += letters[found];
        return;
    }
    text += "\\u00";
    appendHex(byte, text);
}

bool needsEscape(char byte)
{
    return static_cast<unsigned char>(byte) < 0x20U || byte == '"' || byte == '\\';
}

void appendQuoted(std::string_view value, std::string& text)
{
    text += '"';
    std::size_t start = 0;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (!needsEscape(value[i]))
            continue;
        text += value.substr(start, i - start);
        appendEscaped(value[i], text);
        start = i + 1;
    }
    text += value.substr(start);
    text += '"';
}

bool isUtf8(const std::string& text)
{
    return simdjson::validate_utf8(text);
}

/// What both texts write in the same way.
struct JsonWriter
{
    std::string& text;

    void operator()(std::monostate) const { text += "null"; }
    void operator()(bool value) const { text += value ? "true" : "false"; }
    void operator()(std::int64_t value) const { appendNumber(value, text); }
};

/// The text that reads back exactly.
struct ExactWriter : JsonWriter
{
    int depth = 0;

    using JsonWriter::operator();

    void operator()(double value) const
    {
        if (std::isnan(value))
            throw ZoError("an array with a NaN has no JSON text");
        if (std::isinf(value))
            text += value > 0 ? "1e999" : "-1e999"; // beyond every double, and good JSON
        else
            appendFloat(value, text);
    }
    void operator()(const std::string& value) const
    {
        if (!isUtf8(value))
            throw ZoError("an array with a string that is not UTF-8 has no JSON text");
        appendQuoted(value, text);
    }
    void operator()(const ZoValue::Elements& values) const
    {
        if (depth == jsonMaxNesting)
            throw ZoError("an array nests deeper than " + std::to_string(jsonMaxNesting) +
                          " levels");
        text += '[';
        for (std::size_t i = 0; i < values.size(); ++i) {
            text += i == 0 ? "" : ",";
            std::visit(ExactWriter{{text}, depth + 1}, values[i].data());
        }
        text += ']';
    }
};

/// The text for people.
struct DisplayWriter : JsonWriter
{
    std::size_t limit = 0;

    using JsonWriter::operator();

    void operator()(double value) const { appendFloat(value, text); }
    void operator()(const std::string& value) const
    {
        const std::size_t room = limit < text.size() ? 0 : limit - text.size();
        const std::string_view all = value;
        appendQuoted(room < all.size() ? all.substr(0, room + 1) : all, text);
    }
    void operator()(const ZoValue::Elements& values) const
    {
        text += '[';
        for (std::size_t i = 0; i < values.size() && text.size() <= limit; ++i) {
            text += i == 0 ? "" : ",";
            std::visit(*this, values[i].data());
        }
        text += ']';
    }
};

std::string wordOf(double notFinite)
{
    if (std::isnan(notFinite))
        return "NaN";
    return notFinite > 0 ? "Infinity" : "-Infinity";
}

} // namespace

std::string encodeJson(const ZoValue& value)
{
    if (const auto* number = std::get_if<double>(&value.data()); number && !std::isfinite(*number))
        return wordOf(*number);
    if (const auto* bytes = std::get_if<std::string>(&value.data()); bytes && !isUtf8(*bytes))
        return *bytes; // no JSON, so it reads back as it stands
    std::string text;
    std::visit(ExactWriter{{text}}, value.data());
    return text;
}

void appendJsonForDisplay(const ZoValue::Elements& values, std::size_t limit, std::string& text)
{
    DisplayWriter{{text}, limit}(values);
}

} // namespace zo
