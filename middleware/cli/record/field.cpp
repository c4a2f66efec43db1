// SPDX-License-Identifier: MIT
#include "field.h"

#include <kit/quantity.h>

#include <zo/json.h>

#include <optional>

namespace {

bool needsQuotes(std::string_view text)
{
    const auto isBlank = [](char byte) { return byte == ' ' || byte == '\t'; };
    return text.empty() || isBlank(text.front()) || isBlank(text.back()) ||
           text.find_first_of(",\"\r\n") != std::string_view::npos;
}

std::optional<std::chrono::milliseconds> readTime(std::string_view row)
{
    return kit::secondsIn(row.substr(0, row.find(',')));
}

} // namespace

void appendField(std::string_view text, std::string& row)
{
    if (!needsQuotes(text)) {
        row += text;
        return;
    }
    row += '"';
    for (const char byte : text) {
        if (byte == '"')
            row += '"';
        row += byte;
    }
    row += '"';
}

void appendCell(const ZoValue& value, std::string& row)
{
    if (value.getType() != ZoValue::Invalid)
        appendField(ZoJson::textOf(value), row);
}

bool isRow(std::string_view row, std::size_t fields)
{
    std::size_t commas = 0;
    bool isQuoted = false;
    for (const char byte : row) {
        if (byte == '"')
            isQuoted = !isQuoted;
        else if (byte == ',' && !isQuoted)
            ++commas;
    }
    return !isQuoted && commas + 1 == fields && readTime(row);
}

std::chrono::milliseconds timeOfRow(std::string_view row)
{
    return readTime(row).value_or(std::chrono::milliseconds());
}
