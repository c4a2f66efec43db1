// SPDX-License-Identifier: MIT
#include "record_finder.h"

#include <functional>
#include <limits>

// Only hashes are remembered, never texts: a position is a candidate when its remembered hash is
// that of the text looked for, and the names themselves are compared as they stand. So names that
// share a hash, or change into one another under the same hash, are told apart all the same, and
// it is enough to check that the hashes of all records up to the one found are still the same.

namespace {

constexpr std::uint32_t nowhere = std::numeric_limits<std::uint32_t>::max();

std::size_t bucketCount(std::size_t records)
{
    std::size_t count = 1;
    while (count < records)
        count *= 2;
    return count;
}

} // namespace

std::uint32_t RecordFinder::xDefaultHash(const std::string& text)
{
    return static_cast<std::uint32_t>(std::hash<std::string>()(text));
}

STMVal* RecordFinder::find(const Records& records, const std::string& text)
{
    if (records.size() != fHashes.size())
        xRemember(records);
    const std::uint32_t hash = fHash(text);
    std::uint32_t found = xCandidate(records, hash, text);
    if (!xCheckThrough(records, found == nowhere ? records.size() : found)) {
        xRemember(records);
        found = xCandidate(records, hash, text);
    }
    if (found == nowhere)
        return nullptr;
    if (found == fChecked)
        ++fChecked; // its very text was just compared
    fGuess = found + 1;
    return records[found].get();
}

std::uint32_t RecordFinder::xCandidate(const Records& records, std::uint32_t hash,
                                       const std::string& text) const
{
    const auto matches = [&](std::uint32_t position) {
        return fHashes[position] == hash && records[position]->names.*fName == text;
    };
    // Texts often come in the order of the records; then the buckets need not be touched.
    if (fGuess < records.size() && fIsFirst[fGuess] && matches(fGuess))
        return fGuess;
    if (records.empty())
        return nowhere;
    std::uint32_t position = fBuckets[hash & (fBuckets.size() - 1)];
    while (position != nowhere && !matches(position))
        position = fNext[position];
    return position;
}

bool RecordFinder::xCheckThrough(const Records& records, std::size_t count)
{
    while (fChecked < count && fHash(records[fChecked]->names.*fName) == fHashes[fChecked])
        ++fChecked;
    return fChecked >= count;
}

void RecordFinder::xRemember(const Records& records)
{
    fChecked = 0;
    fHashes.reserve(records.size()); // what may run out of memory comes first
    fNext.resize(records.size());
    fIsFirst.assign(records.size(), false);
    fBuckets.assign(bucketCount(records.size()), nowhere);
    fHashes.resize(records.size());
    // From the back, so that every bucket lists its positions in ascending order.
    for (std::size_t position = records.size(); position-- > 0;) {
        fHashes[position] = fHash(records[position]->names.*fName);
        std::uint32_t& first = fBuckets[fHashes[position] & (fBuckets.size() - 1)];
        if (first != nowhere)
            fIsFirst[first] = false;
        fIsFirst[position] = true;
        fNext[position] = first;
        first = static_cast<std::uint32_t>(position);
    }
    fChecked = records.size();
}
