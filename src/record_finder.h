// SPDX-License-Identifier: MIT
#pragma once

#include "model.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// Finds records by one of their names, many in a row at linear cost: the first one from the
/// front whose name equals the text, exactly as a scan would. Use a KeyFinder or an AliasFinder.
///
/// Anybody may change the records and their names at any time, so nothing it remembers is taken
/// for granted: each batch of look-ups checks it against the names as they stand. A batch of N
/// look-ups among M records costs one pass over the records, up to the last one that is found,
/// plus a constant time for each look-up; only when names have changed since the last batch is
/// the rest made anew. Keep the finder from batch to batch for that, 12 to 17 bytes a record.
///
///     const ZoCriticalSectionRead guard(model.fMutex);
///     finder.begin();
///     for (const std::string& alias : aliases)
///         STMVal* record = finder.find(model.fSTMVals, alias);
///
/// A finder belongs to one thread at a time. It may serve one list of records after another.
class RecordFinder
{
public:
    using Records = std::vector<boost::shared_ptr<STMVal>>;

    /// Begins a batch. From here to the last `find` of the batch nobody changes the records or
    /// their names: hold the model's lock.
    void begin() { fChecked = 0; }

    /// The first record with this name; null when there is none.
    STMVal* find(const Records& records, const std::string& text);

protected:
    using Names = std::pair<std::string, std::string>;
    using Name = std::string Names::*;
    using Hash = std::uint32_t (*)(const std::string& text);
    explicit RecordFinder(Name name, Hash hash = &RecordFinder::xDefaultHash)
        : fName(name), fHash(hash)
    {
    }
    ~RecordFinder() = default;

private:
    static std::uint32_t xDefaultHash(const std::string& text);
    std::uint32_t xCandidate(const Records& records, std::uint32_t hash,
                             const std::string& text) const;
    bool xCheckThrough(const Records& records, std::size_t count);
    void xRemember(const Records& records);

    Name fName;
    Hash fHash;
    std::uint32_t fGuess = 0;            ///< where the next text is looked for first
    std::size_t fChecked = 0;            ///< so many records are as remembered, in this batch
    std::vector<std::uint32_t> fHashes;  ///< of each record's name
    std::vector<std::uint32_t> fBuckets; ///< by the lower bits of the hash: first position
    std::vector<std::uint32_t> fNext;    ///< for each position the next one in the bucket
    std::vector<bool> fIsFirst;          ///< for each position whether it is its bucket's first
};

/// Finds by the key in the robot's memory.
class KeyFinder final : public RecordFinder
{
public:
    KeyFinder() : RecordFinder(&Names::first) {}
};

/// Finds by the alias.
class AliasFinder final : public RecordFinder
{
public:
    AliasFinder() : RecordFinder(&Names::second) {}
};
