// SPDX-License-Identifier: MIT
#include <kit/quantity.h>
#include <kit/usage_error.h>

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
#include <vector>

namespace kit {

namespace {

struct Unit
{
    std::string_view name;
    double factor;
};

const std::vector<Unit> timeUnits = {
    {"ms", 1}, {"s", 1e3}, {"min", 60e3}, {"h", 3600e3}, {"d", 86400e3}}; // ms
const std::vector<Unit> sizeUnits = {{"kB", 1e3}, {"MB", 1e6}, {"GB", 1e9}, {"TB", 1e12}};

constexpr double mostTime = 10 * 365.25 * 86400e3;
constexpr double mostSize = 1e15;
constexpr double mostSeconds = 1e11;

/// What `text` spells in these units, a whole number from 1 to `most`; nothing when it does not.
std::optional<std::int64_t> quantityFrom(const std::string& text, const std::vector<Unit>& units,
                                         double most)
{
    double number = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number, std::chars_format::fixed);
    if (read.ec != std::errc())
        return {};
    const std::string_view name(read.ptr, static_cast<std::size_t>(end - read.ptr));
    for (const Unit& unit : units)
        if (unit.name == name && number * unit.factor >= 1 && number * unit.factor <= most)
            return static_cast<std::int64_t>(number * unit.factor);
    return {};
}

} // namespace

std::optional<std::chrono::milliseconds> timeIn(const std::string& text)
{
    if (const auto time = quantityFrom(text, timeUnits, mostTime))
        return std::chrono::milliseconds(*time);
    return {};
}

std::optional<std::chrono::milliseconds> secondsIn(std::string_view text)
{
    double seconds = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, seconds);
    if (read.ec != std::errc() || read.ptr != end || !(std::abs(seconds) <= mostSeconds))
        return {};
    return std::chrono::milliseconds(std::llround(seconds * 1000));
}

std::string secondsText(std::chrono::milliseconds time)
{
    const std::string thousandths = std::to_string(time.count() % 1000);
    return std::to_string(time.count() / 1000) + "." + std::string(3 - thousandths.size(), '0') +
           thousandths;
}

std::optional<std::uint64_t> sizeIn(const std::string& text)
{
    if (const auto size = quantityFrom(text, sizeUnits, mostSize))
        return static_cast<std::uint64_t>(*size);
    return {};
}

std::chrono::milliseconds timeFrom(const std::string& option, const std::string& text)
{
    if (const auto time = timeIn(text))
        return *time;
    throw UsageError(option +
                     " must be a time with its unit (ms, s, min, h, d), as in 90s or "
                     "1.5h, not '" +
                     text + "'");
}

std::string sizeText(std::uint64_t bytes)
{
    if (bytes < 1000)
        return std::to_string(bytes) + " B";
    std::size_t unit = 0;
    while (unit + 1 < sizeUnits.size() &&
           static_cast<double>(bytes) >= 999.95 * sizeUnits[unit].factor)
        ++unit;
    std::array<char, 32> text{};
    const double number = static_cast<double>(bytes) / sizeUnits[unit].factor;
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed, 1);
    return std::string(text.data(), end.ptr) + " " + std::string(sizeUnits[unit].name);
}

} // namespace kit
