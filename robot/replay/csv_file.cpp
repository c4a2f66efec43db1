// SPDX-License-Identifier: MIT
#include "csv_file.h"

#include <kit/ordinary_file.h>
#include <kit/system_text.h>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <new>
#include <stdexcept>
#include <unistd.h>
#include <utility>

namespace {

constexpr std::size_t pieceSize = 65536;
/// By which the parser's memory for a field grows. It copies the field each time, so that its own
/// 128 bytes make a large one take the square of its size.
constexpr std::size_t growth = std::size_t{1} << 20;
constexpr int endedByFile = -1; ///< what the parser gives in place of a row's last byte

kit::Descriptor openFile(const std::string& path)
{
    // Without waiting for whoever writes into a pipe, which could not be rewound.
    kit::Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    if (!file.isOpen())
        throw std::runtime_error("cannot read the file '" + path + "': " + kit::messageOf(errno));
    if (!kit::isOrdinaryFile(file.get()))
        throw std::runtime_error("cannot read the file '" + path + "': it is no ordinary file");
    return file;
}

off_t startOf(const kit::Descriptor& file)
{
    constexpr std::string_view mark = "\xef\xbb\xbf";
    std::array<char, mark.size()> bytes{};
    const bool isThere =
        ::pread(file.get(), bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()) &&
        std::string_view(bytes.data(), bytes.size()) == mark;
    return isThere ? static_cast<off_t>(mark.size()) : 0;
}

} // namespace

CsvFile::CsvFile(const std::string& path)
    : fPath(path), fFile(openFile(path)), fStart(startOf(fFile)), fPiece(pieceSize)
{
    rewind();
}

CsvFile::~CsvFile()
{
    csv_free(&fParser);
}

void CsvFile::beginParsing()
{
    fParser = {};
    if (csv_init(&fParser, CSV_STRICT) != 0)
        throw std::bad_alloc();
    csv_set_blk_size(&fParser, growth);
}

bool CsvFile::next(CsvRow& row)
{
    while (fRows.empty() && !fIsAtEnd)
        readPiece();
    if (fRows.empty())
        return false;
    row = std::move(fRows.front());
    fRows.pop_front();
    ++fNumber;
    return true;
}

void CsvFile::rewind()
{
    csv_free(&fParser);
    beginParsing();
    if (::lseek(fFile.get(), fStart, SEEK_SET) != fStart)
        refuse("the file cannot be read from its start again: " + kit::messageOf(errno));
    fGrowing = {};
    fRows.clear();
    fNumber = 0;
    fIsAtEnd = fIsCut = fIsTooLarge = false;
}

void CsvFile::refuse(const std::string& what) const
{
    const std::string row = fNumber > 0 ? ", row " + std::to_string(fNumber) : "";
    throw std::runtime_error("the file '" + fPath + "'" + row + ": " + what);
}

void CsvFile::readPiece()
{
    const ssize_t count = ::read(fFile.get(), fPiece.data(), fPiece.size());
    if (count < 0 && errno != EINTR)
        throw std::runtime_error("cannot read the file '" + fPath + "': " + kit::messageOf(errno));
    if (count == 0)
        readEnd();
    if (count <= 0)
        return;
    const auto size = static_cast<std::size_t>(count);
    const bool isGood = csv_parse(&fParser, fPiece.data(), size, takeField, takeRow, this) == size;
    if (fGrowing.bytes() + fParser.entry_pos > fMostBytes || fGrowing.size() > fMostFields)
        fIsTooLarge = true;
    if (isGood && !fIsTooLarge)
        return;
    fNumber += fRows.size() + 1;
    refuse(fIsTooLarge ? "it is larger than any row may be: is a quote not closed?"
                       : "a quote stands where none may be");
}

/// Values that the end cuts may be whole, and other values then: nobody can tell.
void CsvFile::readEnd()
{
    fIsAtEnd = true;
    csv_fini(&fParser, takeField, takeRow, this);
    fIsCut = fIsCut || fGrowing.size() > 0;
}

void CsvFile::takeField(void* bytes, std::size_t size, void* file)
{
    static_cast<CsvFile*>(file)->fGrowing.add({static_cast<const char*>(bytes), size});
}

void CsvFile::takeRow(int end, void* file)
{
    auto& self = *static_cast<CsvFile*>(file);
    if (end == endedByFile)
        self.fIsCut = true;
    else
        self.fRows.push_back(std::move(self.fGrowing));
    self.fGrowing = {};
}
