// SPDX-License-Identifier: MIT
#include "memory/followed_values.h"

#include "memory/key_prefix.h"

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

void pause(FollowedValue& followed, FollowedValue::Time now)
{
    followed.pause = std::clamp<SteadyClock::duration>(
        2 * followed.pause, FollowedValues::fShortestPause, FollowedValues::fLongestPause);
    followed.notBefore = now + followed.pause;
}

} // namespace

FollowedValues::Entry* FollowedValues::acquire(const std::string& key)
{
    const auto [found, isNew] = fEntries.try_emplace(key);
    if (isNew) {
        fMemory += bytesOf(*found);
        const auto written = fWritten.find(key);
        found->second.writes = written == fWritten.end() ? 0 : written->second;
    }
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

void FollowedValues::set(FollowedValue& followed, ZoValue value)
{
    followed.value = std::move(value);
    followed.version = ++fVersion;
    const std::size_t bytes = bytesOf(followed.value);
    fMemory += bytes - followed.bytes;
    followed.bytes = bytes;
}

bool FollowedValues::put(Entry& entry, ZoValue value, const Reading& reading)
{
    FollowedValue& followed = entry.second;
    const auto& [place, isArmed, askedAt, arrivedAt] = reading;
    if (isArmed)
        followed.armedAt = std::max(followed.armedAt, place);
    if (place < followed.readAt)
        return false;
    const bool isFirst = followed.readAt == 0;
    followed.readAt = place;
    followed.askedAt = askedAt;
    followed.arrivedAt = arrivedAt;
    if (!isFirst && followed.value == value)
        return true;
    if (!isFirst)
        followed.changedAt = place;
    set(followed, std::move(value));
    return true;
}

bool FollowedValues::read(Entry& entry, ZoValue value, const Reading& reading)
{
    if (!put(entry, std::move(value), reading))
        return false;
    entry.second.isForbidden = false;
    if (!std::exchange(entry.second.isLeftOut, false)) // it may be left out again
        entry.second.pause = {};
    entry.second.notBefore = {};
    return true;
}

bool FollowedValues::readTooLarge(Entry& entry, const Reading& reading, Time now)
{
    if (!put(entry, {}, reading))
        return false;
    entry.second.isForbidden = false;
    pause(entry.second, now);
    return true;
}

void FollowedValues::leaveOut(Entry& entry, Time now)
{
    set(entry.second, {});
    entry.second.isLeftOut = true;
    pause(entry.second, now);
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

void FollowedValues::noticed(const std::string& whole, Place place)
{
    const auto key = nameBehind(fPrefix, whole);
    const auto found = key ? fEntries.find(std::string(*key)) : fEntries.end();
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
        const int writes = ++fWritten[key];
        const auto found = fEntries.find(key);
        if (found != fEntries.end())
            found->second.writes = writes;
    }
}

// The key may have come to the followed ones in between, and the next write may be under way.
void FollowedValues::endWrite(const std::vector<std::string>& keys, Place place)
{
    for (const std::string& key : keys) {
        const auto written = fWritten.find(key);
        const int left = written == fWritten.end() ? 0 : --written->second;
        if (written != fWritten.end() && left == 0)
            fWritten.erase(written);
        const auto found = fEntries.find(key);
        if (found == fEntries.end())
            continue;
        found->second.noticedAt = place;
        found->second.writtenAt = place;
        found->second.writes = left;
    }
}

void FollowedValues::forget()
{
    fWritten.clear();
    for (auto& [key, followed] : fEntries) {
        fMemory -= followed.bytes;
        const int lists = followed.lists;
        followed = {};
        followed.lists = lists;
    }
}

} // namespace zo
