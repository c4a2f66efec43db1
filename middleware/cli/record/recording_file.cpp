// SPDX-License-Identifier: MIT
#include "recording_file.h"

#include "field.h"
#include "recording_end.h"

#include <kit/ordinary_file.h>
#include <kit/quantity.h>
#include <kit/system_text.h>

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace {

constexpr mode_t everybody = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
// Opening a pipe must not wait for its reader.
constexpr int openFlags = O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;

std::string named(const std::string& path)
{
    return "the file '" + path + "'";
}

kit::Descriptor openFile(const std::string& path)
{
    kit::Descriptor file(::open(path.c_str(), openFlags, everybody));
    if (!file.isOpen())
        throw std::runtime_error("cannot record into " + named(path) + ": " +
                                 kit::messageOf(errno));
    if (!kit::isOrdinaryFile(file.get()))
        throw std::runtime_error("cannot record into " + named(path) +
                                 ": it is no ordinary file; without --output, rows go to standard "
                                 "output");
    return file;
}

/// For as long as it is open.
void lockFile(const kit::Descriptor& file, const std::string& path)
{
    if (::flock(file.get(), LOCK_EX | LOCK_NB) == 0)
        return;
    if (errno == EWOULDBLOCK)
        throw std::runtime_error(named(path) + " is being recorded into by another program");
    throw std::runtime_error("cannot lock " + named(path) + ": " + kit::messageOf(errno));
}

std::uint64_t sizeOf(int descriptor)
{
    struct stat status
    {
    };
    return ::fstat(descriptor, &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
}

/// A power cut may take the name of a new file away from what is in it.
void syncFolderOf(const std::string& path)
{
    const std::string folder = std::filesystem::path(path).parent_path().string();
    const kit::Descriptor opened(
        ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened.isOpen())
        ::fsync(opened.get());
}

} // namespace

RecordingFile::RecordingFile(const std::string& path, kit::Descriptor file, const Form& form)
    : fPath(path), fFile(std::move(file)), fSync(fFile.get())
{
    begin(form.header);
}

RecordingFile::RecordingFile(const std::string& path, const Form& form, Time now)
    : fPath(path), fFile(openFile(path)), fSync(fFile.get())
{
    lockFile(fFile, path);
    const std::uint64_t size = sizeOf(fFile.get());
    if (size > 0)
        goOn(form, now);
    else
        begin(form.header);
}

std::unique_ptr<RecordingFile> RecordingFile::make(const std::string& path, const Form& form)
{
    kit::Descriptor file(::open(path.c_str(), openFlags | O_EXCL, everybody));
    if (!file.isOpen() && errno == EEXIST)
        return nullptr;
    if (!file.isOpen())
        throw std::runtime_error("cannot record into " + named(path) + ": " +
                                 kit::messageOf(errno));
    lockFile(file, path);
    return std::unique_ptr<RecordingFile>(new RecordingFile(path, std::move(file), form));
}

void RecordingFile::begin(const std::string& header)
{
    syncFolderOf(fPath);
    write(header);
}

void RecordingFile::goOn(const Form& form, Time now)
{
    const std::string remedy = ": choose another file";
    const std::uint64_t size = sizeOf(fFile.get());
    const std::string start = startOf(fFile.get(), form.header.size());
    if (start != form.header)
        throw std::runtime_error(
            named(fPath) + " is there already, and is no recording of these columns" + remedy);
    const RecordingEnd end = findEnd(fFile.get(), size, form.header.size());
    if (end.lastRow)
        checkLastRow(*end.lastRow, form, now, remedy);
    fIsContinued = true;
    fSize = end.wholeSize;
    fCutBytes = size - fSize;
    if (fCutBytes > 0 && ::ftruncate(fFile.get(), static_cast<off_t>(fSize)) != 0)
        fail("cut the row that is not whole from", errno);
}

void RecordingFile::checkLastRow(const std::string& row, const Form& form, Time now,
                                 const std::string& remedy)
{
    fLastTime = timeOfRow(row);
    if (!isRow(row, form.fields) || *fLastTime < Time(0))
        throw std::runtime_error(
            named(fPath) + " is there already, and its last row does not fit its columns" + remedy);
    if (*fLastTime > now)
        throw std::runtime_error(named(fPath) + " ends at " + kit::secondsText(*fLastTime) +
                                 ", which is still to come: set this machine's clock right, or" +
                                 remedy.substr(1));
}

void RecordingFile::add(const std::string& rows, Time time)
{
    write(rows);
    fLastTime = time;
}

void RecordingFile::write(const std::string& text)
{
    std::size_t written = 0;
    while (written < text.size()) {
        const ssize_t count = ::write(fFile.get(), text.data() + written, text.size() - written);
        if (count >= 0)
            written += static_cast<std::size_t>(count);
        else if (errno != EINTR)
            endWhole(errno);
    }
    fSize += written;
    if (const int error = fSync.wrote())
        endWhole(error);
}

void RecordingFile::finish()
{
    if (const int error = fSync.finish())
        fail("bring to the disk", error, ": its last rows may be lost");
    if (place() == Place::Deleted)
        throw std::runtime_error(named(fPath) + " was deleted, and its rows are lost");
}

RecordingFile::Place RecordingFile::place() const
{
    struct stat own
    {
    };
    struct stat atPath
    {
    };
    if (::fstat(fFile.get(), &own) != 0)
        fail("look after", errno);
    checkSize(own.st_size);
    const bool isHere = ::stat(fPath.c_str(), &atPath) == 0 && atPath.st_dev == own.st_dev &&
                        atPath.st_ino == own.st_ino;
    if (isHere)
        return Place::Here;
    return own.st_nlink == 0 ? Place::Deleted : Place::Moved;
}

void RecordingFile::checkSize(std::int64_t size) const
{
    if (static_cast<std::uint64_t>(size) != fSize)
        throw std::runtime_error(named(fPath) + " was changed by another program: it has " +
                                 std::to_string(size) + " bytes, not " + std::to_string(fSize) +
                                 " as recorded");
}

std::optional<std::uint64_t> RecordingFile::freeBytes() const
{
    struct statvfs status
    {
    };
    if (::fstatvfs(fFile.get(), &status) != 0)
        return {};
    return std::uint64_t{status.f_bavail} * status.f_frsize;
}

void RecordingFile::fail(const std::string& what, int error, const std::string& rest) const
{
    throw std::runtime_error("cannot " + what + " " + named(fPath) + ": " + kit::messageOf(error) +
                             rest);
}

/// The rows that are whole stay.
void RecordingFile::endWhole(int error)
{
    if (::ftruncate(fFile.get(), static_cast<off_t>(fSize)) != 0)
        fail("write", error, ", nor cut the row at its end that is not whole");
    fSync.finish();
    const std::string rows =
        fLastTime ? "; it holds whole rows until " + kit::secondsText(*fLastTime) : std::string();
    fail("write", error, rows);
}
