// SPDX-License-Identifier: MIT
#include <zo/error.h>
#include <zo/value.h>

#include "value/json.h"
#include "value/number_text.h"
#include "value/utf8.h"

#include <cmath>
#include <limits>

namespace {

constexpr std::size_t briefLength = 64;
constexpr std::size_t normalLength = 1024;
constexpr char cutMark[] = "...";

std::size_t lengthLimit(_TVerbosity verbosity)
{
    if (verbosity >= ZoWhole)
        return std::numeric_limits<std::size_t>::max();
    return verbosity == ZoNormal ? normalLength : briefLength;
}

/// Writes each type as `ZoValue::toString` shows it. What is beyond the limit may be left out,
/// as long as the text still is longer than the limit.
struct DisplayText
{
    std::string& text;
    std::size_t limit;

    void operator()(std::monostate) const {}
    void operator()(bool value) const { text = value ? "true" : "false"; }
    void operator()(std::int64_t value) const { zo::appendNumber(value, text); }
    void operator()(double value) const { zo::appendNumber(value, text); }
    void operator()(const std::string& value) const
    {
        text.assign(value, 0, limit < value.size() ? limit + 1 : value.size());
    }
    void operator()(const ZoValue::Elements& values) const
    {
        zo::appendJsonForDisplay(values, limit, text);
    }
};

[[noreturn]] void throwWrongType(const char* wanted, int type)
{
    throw ZoError(std::string("ZoValue: ") + wanted + " was asked of a value of type " +
                  ZoValue::typeName(type));
}

} // namespace

ZoValue::ZoValue(const std::vector<std::string>& values)
    : fData(Elements(values.begin(), values.end()))
{
}

ZoValue ZoValue::fromElements(Elements elements) noexcept
{
    ZoValue value;
    value.fData = std::move(elements);
    return value;
}

void ZoValue::arraySetSize(int size)
{
    if (size < 0)
        throw ZoError("ZoValue: an array of " + std::to_string(size) + " elements was asked for");
    if (!std::holds_alternative<Elements>(fData))
        fData = Elements();
    std::get<Elements>(fData).resize(static_cast<std::size_t>(size));
}

void ZoValue::throwNoElement(int index) const
{
    if (!std::holds_alternative<Elements>(fData))
        throwWrongType("an element", getType());
    throw ZoError("ZoValue: no element " + std::to_string(index) + " in an array of " +
                  std::to_string(getSize()));
}

void ZoValue::throwNoString() const
{
    throwWrongType("a string", getType());
}

const char* ZoValue::typeName(int type) noexcept
{
    static constexpr const char* names[] = {"invalid", "array", "bool", "int", "float", "string"};
    return type >= Invalid && type <= String ? names[type] : "unknown";
}

ZoValue::operator std::string&()
{
    return const_cast<std::string&>(asString());
}

std::string ZoValue::toString(_TVerbosity verbosity) const
{
    std::string text;
    toString(verbosity, text);
    return text;
}

void ZoValue::toString(_TVerbosity verbosity, std::string& text) const
{
    const std::size_t limit = lengthLimit(verbosity);
    text.clear();
    std::visit(DisplayText{text, limit}, fData);
    if (text.size() > limit) {
        text.resize(zo::wholeCharacters(text, limit).size());
        text += cutMark;
    }
}

bool ZoValue::operator==(const ZoValue& other) const noexcept
{
    const auto* mine = std::get_if<double>(&fData);
    const auto* theirs = std::get_if<double>(&other.fData);
    if (mine && theirs && std::isnan(*mine))
        return std::isnan(*theirs);
    return fData == other.fData;
}
