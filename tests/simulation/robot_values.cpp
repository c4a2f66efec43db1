// SPDX-License-Identifier: MIT
#include "simulation/robot_values.h"

#include <charconv>
#include <cmath>

namespace {

constexpr ValueId strange = -2;
constexpr ValueId versions = 1000000;
constexpr std::string_view keyPrefix = "Arm/Joint";
constexpr std::string_view textPrefix = "state ";

enum class Form
{
    Int,
    Float,
    Text,
    Array
};

Form formOf(ValueId id)
{
    return static_cast<Form>(id % 4);
}

ValueId numberIn(std::string_view text)
{
    ValueId number = strange;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isWhole = read.ptr == text.data() + text.size();
    return read.ec == std::errc() && isWhole ? number : strange;
}

std::string_view without(std::string_view text, std::size_t front, std::size_t back)
{
    return text.size() < front + back ? std::string_view()
                                      : text.substr(front, text.size() - front - back);
}

ValueId readId(const ZoValue& value)
{
    const auto& data = value.data();
    if (const auto* number = std::get_if<std::int64_t>(&data))
        return *number;
    if (const auto* real = std::get_if<double>(&data))
        return static_cast<ValueId>(std::floor(*real));
    if (const auto* text = std::get_if<std::string>(&data))
        return numberIn(without(*text, textPrefix.size(), 0));
    const bool isPair = value.getSize() == 2 && value[0].getType() == ZoValue::Int;
    return isPair ? std::get<std::int64_t>(value[0].data()) : strange;
}

} // namespace

ValueId makeValueId(int key, int version)
{
    return (key + 1) * versions + version;
}

std::string keyName(int key)
{
    return std::string(keyPrefix) + std::to_string(key);
}

int keyNumber(std::string_view name)
{
    if (name.substr(0, keyPrefix.size()) != keyPrefix)
        return -1;
    return static_cast<int>(std::max<ValueId>(numberIn(name.substr(keyPrefix.size())), -1));
}

void appendRobotText(ValueId id, std::string& text)
{
    char digits[24];
    const char* const end = std::to_chars(digits, digits + sizeof digits, id).ptr;
    const std::string_view number(digits, end - digits);
    switch (formOf(id)) {
    case Form::Int:
        text.append(number);
        break;
    case Form::Float:
        text.append(number).append(".5");
        break;
    case Form::Text:
        text.append("\"").append(textPrefix).append(number).append("\"");
        break;
    case Form::Array:
        text.append("[").append(number).append(",\"m\"]");
        break;
    }
}

std::string robotText(ValueId id)
{
    std::string text;
    appendRobotText(id, text);
    return text;
}

ZoValue robotValue(ValueId id)
{
    switch (formOf(id)) {
    case Form::Int:
        return id;
    case Form::Float:
        return static_cast<double>(id) + 0.5;
    case Form::Text:
        return std::string(textPrefix) + std::to_string(id);
    default:
        return ZoValue::fromElements({ZoValue(id), ZoValue("m")});
    }
}

ValueId valueIdOf(const ZoValue& value)
{
    if (value.getType() == ZoValue::Invalid)
        return noValue;
    const ValueId id = readId(value);
    return id > 0 && robotValue(id) == value ? id : strange;
}

ValueId valueIdOfText(std::string_view text)
{
    const std::size_t digit = text.find_first_of("0123456789");
    if (digit == std::string_view::npos)
        return strange;
    const std::size_t end = text.find_first_not_of("0123456789", digit);
    const ValueId id = numberIn(text.substr(digit, end - digit));
    return id > 0 && robotText(id) == text ? id : strange;
}
