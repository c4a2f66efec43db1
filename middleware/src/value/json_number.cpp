// SPDX-License-Identifier: MIT
#include "value/json_number.h"

#include <zo/value.h>

#include <charconv>
#include <cstdlib>
#include <locale.h>
#include <new>

namespace zo {

namespace {

const char* skipDigits(const char* at, const char* end)
{
    while (at != end && *at >= '0' && *at <= '9')
        ++at;
    return at;
}

/// Behind at least one digit at `at`, or null.
const char* skipSomeDigits(const char* at, const char* end)
{
    const char* behind = skipDigits(at, end);
    return behind == at ? nullptr : behind;
}

/// Behind "e" or "E", a sign if there is one, and digits; or null.
const char* skipExponent(const char* at, const char* end)
{
    ++at;
    if (at != end && (*at == '+' || *at == '-'))
        ++at;
    return skipSomeDigits(at, end);
}

enum class Kind
{
    None,
    Integer,
    Float
};

/// The grammar of JSON's numbers: no plus sign, no leading zeros, digits on both sides of a dot.
Kind kindOf(std::string_view text)
{
    const char* at = text.data();
    const char* const end = at + text.size();
    if (at != end && *at == '-')
        ++at;
    at = at != end && *at == '0' ? at + 1 : skipSomeDigits(at, end);
    if (at == end)
        return Kind::Integer;
    if (at && *at == '.')
        at = skipSomeDigits(at + 1, end);
    if (at && at != end && (*at == 'e' || *at == 'E'))
        at = skipExponent(at, end);
    return at == end ? Kind::Float : Kind::None;
}

locale_t makePlainLocale()
{
    const locale_t made = ::newlocale(LC_ALL_MASK, "C", nullptr);
    if (!made)
        throw std::bad_alloc();
    return made;
}

/// Too large is infinite and too small is zero or nearly so; always with a dot for fractions,
/// whatever the locale of the process.
double readOutOfRange(std::string_view text)
{
    static const locale_t plain = makePlainLocale();
    return ::strtod_l(std::string(text).c_str(), nullptr, plain);
}

double readFloat(std::string_view text)
{
    double number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    return result.ec == std::errc() ? number : readOutOfRange(text);
}

} // namespace

bool readJsonNumber(std::string_view text, ZoValue& value)
{
    const Kind kind = kindOf(text);
    if (kind == Kind::Integer) {
        std::int64_t number = 0;
        const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
        if (result.ec == std::errc()) {
            value = ZoValue(number);
            return true;
        }
    }
    if (kind != Kind::None)
        value = ZoValue(readFloat(text));
    return kind != Kind::None;
}

} // namespace zo
