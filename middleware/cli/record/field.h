// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>
#include <string_view>

class ZoValue;

/// Fields of comma-separated values, as RFC 4180 has them.

constexpr std::string_view endOfRow = "\r\n";

/// Appends `text` as a field, in quotes where it needs them.
void appendField(std::string_view text, std::string& row);

/// Appends JSON of `value` as a field, in UTF-8 and without a line break; nothing for an invalid
/// one.
void appendCell(const ZoValue& value, std::string& row);

/// Whether `row`, without its end, has so many fields, of which the first is a time in seconds.
bool isRow(std::string_view row, std::size_t fields);
/// That time; 0 when it is none.
std::chrono::milliseconds timeOfRow(std::string_view row);
