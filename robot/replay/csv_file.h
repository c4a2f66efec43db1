// SPDX-License-Identifier: MIT
#pragma once

#include <kit/descriptor.h>

#include <cstddef>
#include <cstdint>
#include <csv.h>
#include <deque>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

/// A row of a file of comma-separated values.
class CsvRow
{
public:
    std::size_t size() const { return fEnds.size(); }
    std::string_view operator[](std::size_t field) const
    {
        const std::size_t start = field == 0 ? 0 : fEnds[field - 1];
        return std::string_view(fText).substr(start, fEnds[field] - start);
    }
    std::size_t bytes() const { return fText.size(); }

    void add(std::string_view field)
    {
        fText += field;
        fEnds.push_back(fText.size());
    }

private:
    std::string fText; ///< of all fields, one behind the other
    std::vector<std::size_t> fEnds;
};

/// Reads a file of comma-separated values row by row, without the mark of UTF-8 that some programs
/// put before the first; whatever its size, it keeps no more than a piece of it and a row. Errors
/// are std::runtime_error, and name the file and the row.
class CsvFile
{
public:
    static constexpr std::size_t fMostBytes = std::size_t{64} << 20; ///< of a row
    static constexpr std::size_t fMostFields = 1000000;

    explicit CsvFile(const std::string& path);
    ~CsvFile();
    CsvFile(const CsvFile&) = delete;
    CsvFile& operator=(const CsvFile&) = delete;

    /// Whether there was another row. One that the end of the file cuts is none.
    bool next(CsvRow& row);
    /// The row that the end has cut, from 1; 0: there is none, or the end has not been reached.
    std::uint64_t cutRow() const { return fIsCut ? fNumber + 1 : 0; }
    /// Goes on with the first row.
    void rewind();

    /// Throws: `what` is wrong with the row that came last.
    [[noreturn]] void refuse(const std::string& what) const;

private:
    void beginParsing();
    void readPiece();
    void readEnd();
    static void takeField(void* bytes, std::size_t size, void* file);
    static void takeRow(int end, void* file);

    const std::string fPath;
    kit::Descriptor fFile;
    const off_t fStart; ///< of the first row
    csv_parser fParser{};
    std::vector<char> fPiece;
    CsvRow fGrowing;          ///< the row that is being read
    std::deque<CsvRow> fRows; ///< those that were read ahead
    std::uint64_t fNumber = 0;
    bool fIsAtEnd = false;
    bool fIsCut = false;
    bool fIsTooLarge = false;
};
