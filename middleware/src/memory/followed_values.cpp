// SPDX-License-Identifier: MIT
#include "memory/followed_values.h"

#include <algorithm>
#include <utility>
#include <variant>

namespace zo {

namespace {

/// How long a forbidden key is left alone: rights may change.
constexpr std::chrono::seconds pauseOfForbidden{10};

std::size_t bytesOf(const ZoValue& value)
{
    std::size_t bytes = sizeof value;
    if (const auto* text = std::get_if<std::string>(&value.data()))
        return bytes + text->capacity();
    if (const auto* elements = std::get_if<ZoValue::Elements>(&value.data())) {
        for (const ZoValue& element : *elements)
            bytes += bytesOf(element);
    }
    return bytes;
}

std::size_t bytesOf(const FollowedValues::Entry& entry)
{
    return sizeof entry + 4 * sizeof(void*) + entry.first.capacity();
}

} // namespace

FollowedValues::Entry* FollowedValues::acquire(const std::string& key)
{
    const auto [found, isNew] = fEntries.try_emplace(key);
    if (isNew)
        fMemory += bytesOf(*found);
    ++found->second.lists;
    return &*found;
}

void FollowedValues::release(Entry* entry)
{
    if (--entry->second.lists > 0)
        return;
    fMemory -= bytesOf(*entry) + entry->second.bytes;
    fEntries.erase(fEntries.find(entry->first));
}

bool FollowedValues::put(Entry& entry, ZoValue value, const Reading& reading)
{
    FollowedValue& followed = entry.second;
    const auto& [place, isArmed, askedAt] = reading;
    if (isArmed)
        followed.armedAt = std::max(followed.armedAt, place);
    if (place < followed.readAt)
        return false;
    const bool isFirst = followed.readAt == 0;
    followed.readAt = place;
    followed.askedAt = askedAt;
    if (!isFirst && followed.value == value)
        return true;
    if (!isFirst)
        followed.changedAt = place;
    followed.value = std::move(value);
    followed.version = ++fVersion;
    const std::size_t bytes = bytesOf(followed.value);
    fMemory += bytes - followed.bytes;
    followed.bytes = bytes;
    return true;
}

bool FollowedValues::read(Entry& entry, ZoValue value, const Reading& reading)
{
    if (!put(entry, std::move(value), reading))
        return false;
    entry.second.isForbidden = false;
    entry.second.pause = {};
    entry.second.notBefore = {};
    return true;
}

bool FollowedValues::readTooLarge(Entry& entry, const Reading& reading, Time now)
{
    if (!put(entry, {}, reading))
        return false;
    FollowedValue& followed = entry.second;
    followed.isForbidden = false;
    followed.pause =
        std::clamp<SteadyClock::duration>(2 * followed.pause, fShortestPause, fLongestPause);
    followed.notBefore = now + followed.pause;
    return true;
}

bool FollowedValues::refused(Entry& entry, const Reading& reading, Time now)
{
    if (!put(entry, {}, reading))
        return false;
    entry.second.armedAt = 0; // nobody tells that it may be read again
    entry.second.isForbidden = true;
    entry.second.notBefore = now + pauseOfForbidden;
    return true;
}

void FollowedValues::noticed(const std::string& key, Place place)
{
    const auto found = fEntries.find(key);
    if (found != fEntries.end())
        found->second.noticedAt = place;
}

void FollowedValues::noticedAll(Place place)
{
    for (auto& [key, followed] : fEntries)
        followed.noticedAt = place;
}

void FollowedValues::beginWrite(const std::vector<std::string>& keys)
{
    for (const std::string& key : keys) {
        const auto found = fEntries.find(key);
        if (found != fEntries.end())
            ++found->second.writes;
    }
}

// The key may have come to the followed ones in between.
void FollowedValues::endWrite(const std::vector<std::string>& keys, Place place)
{
    for (const std::string& key : keys) {
        const auto found = fEntries.find(key);
        if (found == fEntries.end())
            continue;
        found->second.noticedAt = place;
        found->second.writtenAt = place;
        if (found->second.writes > 0)
            --found->second.writes;
    }
}

void FollowedValues::forget()
{
    for (auto& [key, followed] : fEntries) {
        fMemory -= followed.bytes;
        const int lists = followed.lists;
        followed = {};
        followed.lists = lists;
    }
}

} // namespace zo
