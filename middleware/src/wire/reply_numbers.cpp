// SPDX-License-Identifier: MIT
#include "wire/reply_numbers.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace zo {

namespace {

/// Takes digits off the front; false when there are none.
bool takeDigits(std::string_view& text)
{
    const auto* const end = std::find_if_not(text.begin(), text.end(), isDigit);
    const auto count = static_cast<std::size_t>(end - text.begin());
    text.remove_prefix(count);
    return count > 0;
}

bool takeOneOf(std::string_view bytes, std::string_view& text)
{
    const bool found = !text.empty() && bytes.find(text.front()) != std::string_view::npos;
    if (found)
        text.remove_prefix(1);
    return found;
}

std::string_view withoutPlus(std::string_view text)
{
    return text.substr(!text.empty() && text.front() == '+' ? 1 : 0);
}

bool isDecimal(std::string_view text)
{
    takeOneOf("+-", text);
    if (!takeDigits(text) || (takeOneOf(".", text) && !takeDigits(text)))
        return false;
    if (takeOneOf("eE", text)) {
        takeOneOf("+-", text);
        if (!takeDigits(text))
            return false;
    }
    return text.empty();
}

bool readNoNumber(std::string_view text, double& number)
{
    using Limits = std::numeric_limits<double>;
    if (text == "inf")
        number = Limits::infinity();
    else if (text == "-inf")
        number = -Limits::infinity();
    else if (text == "nan" || text == "-nan")
        number = Limits::quiet_NaN();
    else
        return false;
    return true;
}

template <class Number>
std::from_chars_result convert(std::string_view text, Number& number)
{
    return std::from_chars(text.data(), text.data() + text.size(), number);
}

} // namespace

bool readLength(std::string_view text, std::int64_t& length)
{
    if (text == "-1") {
        length = -1;
        return true;
    }
    const bool isPlain = text == "0" || (!text.empty() && text.front() != '0');
    return isPlain && std::all_of(text.begin(), text.end(), isDigit) &&
           convert(text, length).ec == std::errc();
}

bool readInteger(std::string_view text, std::int64_t& number)
{
    return isBigNumber(text) && convert(withoutPlus(text), number).ec == std::errc();
}

bool readDouble(std::string_view text, double& number)
{
    if (!isDecimal(text))
        return readNoNumber(text, number);
    return convert(withoutPlus(text), number).ec == std::errc();
}

bool isBigNumber(std::string_view text)
{
    takeOneOf("+-", text);
    return takeDigits(text) && text.empty();
}

} // namespace zo
