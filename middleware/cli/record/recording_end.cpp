// SPDX-License-Identifier: MIT
#include "recording_end.h"

#include "field.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <unistd.h>

namespace {

constexpr std::uint64_t pieceSize = 65536;

std::string readAt(int descriptor, std::uint64_t start, std::uint64_t size)
{
    std::string bytes(size, '\0');
    std::size_t read = 0;
    while (read < size) {
        const ssize_t count =
            ::pread(descriptor, &bytes[read], size - read, static_cast<off_t>(start + read));
        if (count < 0 && errno != EINTR)
            throw std::system_error(errno, std::generic_category());
        if (count == 0)
            break;
        read += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
    bytes.resize(read);
    return bytes;
}

/// Two ends of rows are enough: what is between them is the last whole row.
bool holdsLastRow(const std::string& tail)
{
    const std::size_t last = tail.rfind(endOfRow);
    return last != std::string::npos && last > 0 &&
           tail.rfind(endOfRow, last - 1) != std::string::npos;
}

} // namespace

RecordingEnd findEnd(int descriptor, std::uint64_t size, std::uint64_t headerSize)
{
    std::string tail;
    std::uint64_t start = size;
    while (start > headerSize && !holdsLastRow(tail)) {
        const std::uint64_t piece = std::min(pieceSize + tail.size(), start - headerSize);
        start -= piece;
        tail.insert(0, readAt(descriptor, start, piece));
    }
    const std::size_t last = tail.rfind(endOfRow);
    if (last == std::string::npos)
        return {headerSize, {}};
    const std::size_t before = last == 0 ? std::string::npos : tail.rfind(endOfRow, last - 1);
    const std::size_t rowStart = before == std::string::npos ? 0 : before + endOfRow.size();
    return {start + last + endOfRow.size(), tail.substr(rowStart, last - rowStart)};
}

std::string startOf(int descriptor, std::uint64_t size)
{
    return readAt(descriptor, 0, size);
}
