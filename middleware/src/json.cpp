// SPDX-License-Identifier: MIT
#include <zo/json.h>

#include "value/hex.h"
#include "value/json.h"
#include "value/utf8.h"

#include <algorithm>
#include <cctype>

namespace {

constexpr std::string_view strayMark = "\\udc"; ///< two digits follow: those of the byte
constexpr std::size_t strayWidth = strayMark.size() + 2;

/// The end of the UTF-8 that begins at `start`.
std::size_t endOfUtf8(std::string_view text, std::size_t start)
{
    while (start < text.size()) {
        const std::size_t size = zo::characterAt(text, start);
        if (size == 0)
            break;
        start += size;
    }
    return start;
}

/// JSON of a string, without its quotes.
std::string insideOf(std::string_view utf8)
{
    const std::string quoted = zo::encodeJson(ZoValue(std::string(utf8)));
    return quoted.substr(1, quoted.size() - 2);
}

std::string textWithStrays(std::string_view bytes)
{
    std::string text = "\"";
    for (std::size_t i = 0; i < bytes.size();) {
        const std::size_t end = endOfUtf8(bytes, i);
        text += insideOf(bytes.substr(i, end - i));
        i = end;
        if (i < bytes.size()) {
            text += strayMark;
            zo::appendHex(bytes[i++], text);
        }
    }
    return text + "\"";
}

/// The place of the next stray byte in the inside of a JSON string; npos: there is none.
std::size_t findStray(std::string_view inside)
{
    for (std::size_t i = 0; i + 1 < inside.size(); ++i) {
        if (inside[i] != '\\')
            continue;
        if (inside.size() - i >= strayWidth && inside.substr(i, strayMark.size()) == strayMark)
            return i;
        ++i; // whatever is escaped
    }
    return std::string_view::npos;
}

int digitOf(char hex)
{
    return hex <= '9' ? hex - '0' : std::tolower(hex) - 'a' + 10;
}

/// Appends what a piece of the inside of a JSON string spells; false when it is none.
bool appendPiece(std::string_view piece, std::string& bytes)
{
    const std::string quoted = '"' + std::string(piece) + '"';
    ZoValue value = zo::decodeJson(quoted);
    if (value.getType() != ZoValue::String || value.asString() == quoted)
        return false; // taken as it stands
    bytes += value.asString();
    return true;
}

bool appendStray(std::string_view digits, std::string& bytes)
{
    const auto isHex = [](unsigned char digit) { return std::isxdigit(digit) != 0; };
    if (!std::all_of(digits.begin(), digits.end(), isHex))
        return false;
    const int byte = digitOf(digits[0]) * 16 + digitOf(digits[1]);
    bytes += static_cast<char>(byte);
    return byte >= 0x80;
}

bool readStrays(std::string_view inside, std::string& bytes)
{
    while (true) {
        const std::size_t stray = findStray(inside);
        if (!appendPiece(inside.substr(0, stray), bytes))
            return false;
        if (stray == std::string_view::npos)
            return true;
        if (!appendStray(inside.substr(stray + strayMark.size(), 2), bytes))
            return false;
        inside.remove_prefix(stray + strayWidth);
    }
}

} // namespace

std::string ZoJson::textOf(const ZoValue& value)
{
    const auto* bytes = std::get_if<std::string>(&value.data());
    if (bytes && endOfUtf8(*bytes, 0) < bytes->size())
        return textWithStrays(*bytes);
    return zo::encodeJson(value);
}

ZoValue ZoJson::valueOf(std::string_view text)
{
    ZoValue value = zo::decodeJson(text);
    const bool isAsItStands = value.getType() == ZoValue::String && value.asString() == text;
    const bool isQuoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
    std::string bytes;
    if (isAsItStands && isQuoted && readStrays(text.substr(1, text.size() - 2), bytes))
        return {std::move(bytes)};
    return value;
}
