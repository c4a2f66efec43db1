// SPDX-License-Identifier: MIT
#include "simulation/request_reader.h"

#include "simulation/violation.h"

#include <charconv>
#include <optional>
#include <string>

namespace {

constexpr std::string_view lineEnd = "\r\n";

[[noreturn]] void refuse(std::string_view bytes)
{
    throw Violation("only commands are sent", std::string(bytes.substr(0, 60)));
}

/// The number behind `type` at the beginning of `bytes`; none while its line is not all there.
std::optional<std::size_t> takeHeader(std::string_view& bytes, char type)
{
    const std::size_t end = bytes.find(lineEnd);
    if (!bytes.empty() && bytes.front() != type)
        refuse(bytes);
    if (end == std::string_view::npos)
        return {};
    std::size_t number = 0;
    const auto read = std::from_chars(bytes.data() + 1, bytes.data() + end, number);
    if (read.ec != std::errc() || read.ptr != bytes.data() + end)
        refuse(bytes);
    bytes.remove_prefix(end + lineEnd.size());
    return number;
}

} // namespace

bool takeCommand(std::string_view& bytes, std::vector<std::string_view>& words)
{
    std::string_view rest = bytes;
    words.clear();
    auto missing = takeHeader(rest, '*');
    for (; missing && *missing > 0; --*missing) {
        const auto size = takeHeader(rest, '$');
        if (!size || rest.size() < *size + lineEnd.size())
            return false;
        if (rest.substr(*size, lineEnd.size()) != lineEnd)
            refuse(rest);
        words.push_back(rest.substr(0, *size));
        rest.remove_prefix(*size + lineEnd.size());
    }
    if (missing)
        bytes = rest;
    return missing.has_value();
}
