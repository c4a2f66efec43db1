// SPDX-License-Identifier: MIT
#pragma once

#include "csv_file.h"

#include <chrono>
#include <string>
#include <unordered_map>
#include <vector>

/// What a recording says of one moment.
struct ReplayStep
{
    std::chrono::milliseconds time{0}; ///< since the epoch
    bool isGap = false;                ///< no value is known from here on
    struct Cell
    {
        std::size_t key = 0; ///< its place among RecordedFile::keys
        std::string text;
    };
    std::vector<Cell> cells; ///< empty texts are invalid values
};

/// A recording, read step by step; both forms that `zo record` writes. Errors are
/// std::runtime_error, and name the file and the row.
class RecordedFile
{
public:
    explicit RecordedFile(const std::string& path);

    /// The keys seen so far; in a table, all of them.
    const std::vector<std::string>& keys() const { return fKeys; }

    /// Whether there was another step, which takes the place of `step`. Times never run backwards.
    bool next(ReplayStep& step);
    void rewind();
    /// The row that the end has cut, and that is left out; 0: there is none, or the end has not
    /// been reached.
    std::uint64_t cutRow() const { return fFile.cutRow(); }

private:
    void readHeader();
    bool isHeader(const CsvRow& row) const;
    void checkBounds(std::size_t key, std::size_t size);
    void forgetValues();
    bool nextRow();
    void takeTableRow(ReplayStep& step);
    void takeChange(ReplayStep& step);
    std::chrono::milliseconds timeOf(const CsvRow& row) const;
    std::size_t keyCalled(std::string_view name);

    CsvFile fFile;
    bool fHasChanges = false; ///< a row for each change
    std::size_t fFields = 0;  ///< of each row
    std::vector<std::string> fKeys;
    std::unordered_map<std::string, std::size_t> fPlaces; ///< of the keys
    std::vector<std::size_t> fSizes; ///< of changes: of each key's value, in bytes
    std::size_t fBytes = 0;          ///< those, and the names
    std::size_t fStepBytes = 0;      ///< of the changes of one moment
    CsvRow fRow;
    bool fHasRow = false; ///< fRow belongs to the next step
    std::chrono::milliseconds fLastTime{0};
};
