// SPDX-License-Identifier: MIT
#include "value/number_text.h"

#include <charconv>
#include <cmath>

namespace zo {

namespace {

/// Room for the longest shortest text of a double, "-2.2250738585072014e-308", and of an integer.
constexpr std::size_t longestNumber = 32;

template <typename Number>
void appendShortest(Number number, std::string& text)
{
    char buffer[longestNumber];
    const std::to_chars_result result = std::to_chars(buffer, buffer + sizeof buffer, number);
    text.append(buffer, result.ptr);
}

} // namespace

void appendNumber(std::int64_t number, std::string& text)
{
    appendShortest(number, text);
}

void appendNumber(double number, std::string& text)
{
    if (std::isnan(number))
        text += "nan"; // never "-nan": the sign of no number says nothing
    else
        appendShortest(number, text);
}

} // namespace zo
