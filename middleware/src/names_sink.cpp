#include "names_sink.h"

#include <zo/error.h>

#include <algorithm>

namespace {

// A page holds about a thousand names; more come when many share a slot of the server's table.
constexpr int largestPage = 100000;
constexpr std::size_t longestCursor = 20;

[[noreturn]] void refuse()
{
    throw ZoError("malformed reply to SCAN");
}

bool isCursor(std::string_view text)
{
    return !text.empty() && text.size() <= longestCursor &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

} // namespace

void NamesSink::takeArray(const ReplyPlace& place, int size)
{
    const bool isPage = place.depth == 0 && size == 2;
    const bool isList = place.depth == 1 && place.index == 1 && size <= largestPage;
    if (!isPage && !isList)
        refuse();
}

void NamesSink::takeText(const ReplyPlace& place, std::string_view text)
{
    if (place.depth == 2)
        fNames.emplace_back(text);
    else if (place.depth == 1 && place.index == 0 && isCursor(text))
        fCursor = text;
    else
        refuse();
}

void NamesSink::takeInteger(const ReplyPlace&, long long)
{
    refuse();
}

void NamesSink::takeNil(const ReplyPlace&)
{
    refuse();
}

void NamesSink::takeError(const ReplyPlace& place, std::string_view text)
{
    if (place.depth != 0)
        refuse();
    fRefusal = text;
}

std::string NamesSink::nameOf(const ReplyPlace&) const
{
    return "a name in the key list";
}
