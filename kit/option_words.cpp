// SPDX-License-Identifier: MIT
#include <kit/option_words.h>
#include <kit/usage_error.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <type_traits>

namespace kit {

namespace {

/// The shortest text that reads back as `number`.
template <typename Number>
std::string textOf(Number number)
{
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
    return {text.data(), end};
}

} // namespace

bool Words::startsOption() const
{
    return !empty() && next().size() > 1 && next().front() == '-';
}

std::vector<std::string> Words::takeAll()
{
    const auto next = fWords.begin() + static_cast<std::ptrdiff_t>(fNext);
    std::vector<std::string> rest(next, fWords.end());
    fNext = fWords.size();
    return rest;
}

Option flag(const std::string& name, const std::string& help, bool& target)
{
    return {{name}, "", help, [&target](const std::string&, const std::string&) { target = true; }};
}

Option textOption(const std::string& name, const std::string& value, const std::string& help,
                  std::string& target)
{
    return {{name}, value, help, [&target](const std::string&, const std::string& text) {
                target = text;
            }};
}

Option settlingOption(const std::vector<std::string>& names, const std::string& help,
                      const std::function<void()>& act)
{
    return {names, "", help, [act](const std::string&, const std::string&) { act(); }, true};
}

Options aboutOptions(const std::function<void()>& help, const std::function<void()>& version)
{
    return {settlingOption({"--help", "-h"}, "print this", help),
            settlingOption({"--version"}, "print the version", version)};
}

Options joined(Options first, Options second)
{
    std::move(second.begin(), second.end(), std::back_inserter(first));
    return first;
}

const Option& optionCalled(const std::string& name, const Options& options)
{
    for (const Option& option : options)
        if (std::find(option.names.begin(), option.names.end(), name) != option.names.end())
            return option;
    throw UsageError("there is no option '" + name + "' here");
}

bool readOption(Words& words, const Options& options)
{
    const std::string word = words.take();
    const std::size_t equals = word.find('=');
    const std::string name = word.substr(0, equals);
    const Option& option = optionCalled(name, options);
    const bool hasValue = !option.value.empty();
    std::string value;
    if (equals != std::string::npos)
        value = word.substr(equals + 1);
    else if (hasValue && !words.empty())
        value = words.take();
    if (hasValue && value.empty())
        throw UsageError(name + " needs a value");
    if (!hasValue && equals != std::string::npos)
        throw UsageError(name + " has no value");
    option.store(name, value);
    return option.settles;
}

OptionsEnd readOptions(Words& words, const Options& options)
{
    while (words.startsOption()) {
        if (words.next() == "--") {
            words.take();
            return OptionsEnd::Dashes;
        }
        if (readOption(words, options))
            return OptionsEnd::Settled;
    }
    return OptionsEnd::Operand;
}

void refuseOperands(const Words& words)
{
    if (!words.empty())
        throw UsageError("'" + words.next() +
                         "' is no option; an address is given with --connect HOST[:PORT]");
}

template <typename Number>
Number numberFrom(const std::string& option, const std::string& text, Number lowest, Number highest)
{
    Number number{};
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    if (result.ec == std::errc() && result.ptr == end && number >= lowest && number <= highest)
        return number;
    const std::string kind = std::is_integral_v<Number> ? "a whole number" : "a number";
    throw UsageError(option + " must be " + kind + " from " + textOf(lowest) + " to " +
                     textOf(highest) + ", not '" + text + "'");
}

template int numberFrom(const std::string&, const std::string&, int, int);
template std::uint32_t numberFrom(const std::string&, const std::string&, std::uint32_t,
                                  std::uint32_t);
template double numberFrom(const std::string&, const std::string&, double, double);

} // namespace kit
