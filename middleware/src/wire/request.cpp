// SPDX-License-Identifier: MIT
#include "wire/request.h"

#include <charconv>

namespace zo {

namespace {

constexpr std::size_t longestHeader = 24; // a type, 19 digits, the end of the line

void appendHeader(char type, std::size_t number, std::string& bytes)
{
    char header[longestHeader];
    header[0] = type;
    char* const end = std::to_chars(header + 1, header + sizeof header - 2, number).ptr;
    end[0] = '\r';
    end[1] = '\n';
    bytes.append(header, end + 2);
}

} // namespace

void beginCommand(std::size_t words, std::string& bytes)
{
    appendHeader('*', words, bytes);
}

void appendWord(std::string_view word, std::string& bytes)
{
    appendWord({}, word, bytes);
}

void appendWord(std::string_view begin, std::string_view rest, std::string& bytes)
{
    appendHeader('$', begin.size() + rest.size(), bytes);
    bytes.append(begin).append(rest).append("\r\n");
}

void appendCommand(const std::vector<std::string_view>& words, std::string& bytes)
{
    beginCommand(words.size(), bytes);
    for (const std::string_view word : words)
        appendWord(word, bytes);
}

std::string encodeCommand(const std::vector<std::string_view>& words)
{
    std::string bytes;
    appendCommand(words, bytes);
    return bytes;
}

} // namespace zo
