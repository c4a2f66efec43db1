// SPDX-License-Identifier: MIT
#include "row_sink.h"

#include <kit/output.h>
#include <kit/quantity.h>

#include <array>
#include <ctime>
#include <filesystem>
#include <stdexcept>
#include <utility>

namespace {

/// Tells it, too, and has what was moved on the disk.
bool isTakenAway(RecordingFile& file, const RowSink::Tell& tell)
{
    const auto place = file.place();
    if (place == RecordingFile::Place::Here)
        return false;
    const bool isDeleted = place == RecordingFile::Place::Deleted;
    tell("the file '" + file.path() + "' was " +
         (isDeleted ? "deleted, and its rows are lost" : "moved") + ": rows go on in a new one");
    if (!isDeleted)
        file.finish();
    return true;
}

/// A folder has no name that files could get.
void checkIsNoFolder(const std::string& path)
{
    const std::filesystem::path whole(path);
    std::error_code ignored;
    if (!whole.has_filename() || std::filesystem::is_directory(whole, ignored))
        throw std::runtime_error("cannot record into '" + path +
                                 "': it is a folder; add the name that files in it shall get");
}

} // namespace

StreamSink::StreamSink(int descriptor, const std::string& header)
    : fDescriptor(descriptor), fOutput(descriptor)
{
    write(header);
}

void StreamSink::write(const std::string& text)
{
    fOutput.add(text);
    fBytes += text.size();
}

void StreamSink::finish()
{
    fOutput.finish();
    if (!isTaken())
        throw std::runtime_error("the reader of the output pauses: it does not get the last " +
                                 std::to_string(fOutput.waiting()) + " bytes of rows");
}

void StreamSink::checkReader() const
{
    kit::Output(fDescriptor).waitUntil({}); // that time is over
}

FileSink::FileSink(const std::string& path, const RecordingFile::Form& form, Time now, Tell tell)
    : fForm(form), fTell(std::move(tell)), fFile(std::make_unique<RecordingFile>(path, form, now))
{
    if (fFile->cutBytes() > 0)
        fTell("the file '" + path + "' ended within a row: its last " +
              std::to_string(fFile->cutBytes()) + " bytes are cut");
}

bool FileSink::beginsFile(std::size_t, Time)
{
    if (!isTakenAway(*fFile, fTell))
        return false;
    auto another = RecordingFile::make(path(), fForm);
    if (!another)
        throw std::runtime_error("there is another file at '" + path() +
                                 "' now, which is not replaced");
    fBytesBefore = bytes();
    fFile = std::move(another);
    return true;
}

RotatingSink::RotatingSink(const std::string& path, const RecordingFile::Form& form,
                           const Rotation& rotation, Tell tell)
    : fPath(path), fForm(form), fRotation(rotation), fTell(std::move(tell))
{
    checkIsNoFolder(path);
}

bool RotatingSink::beginsFile(std::size_t bytes, Time time)
{
    if (fFile && !isTakenAway(*fFile, fTell)) {
        if (!isDue(bytes, time))
            return false;
        fFile->finish();
    }
    open(time);
    return true;
}

bool RotatingSink::isDue(std::size_t moreBytes, Time time) const
{
    const bool isFull = fRotation.bytes > 0 && fFile->size() + moreBytes > fRotation.bytes;
    const bool isOver = fRotation.time.count() > 0 && time - fBegin >= fRotation.time;
    const bool hasRows = fFile->size() > fForm.header.size(); // one, however large, has a place
    return hasRows && (isFull || isOver);
}

void RotatingSink::open(Time time)
{
    fBytesBefore = bytes();
    fFile.reset();
    for (int number = 1; !fFile; ++number)
        fFile = RecordingFile::make(rotatedPath(fPath, time, number), fForm);
    fBegin = time;
}

void RotatingSink::finish()
{
    if (fFile)
        fFile->finish();
}

std::optional<std::uint64_t> RotatingSink::freeBytes() const
{
    return fFile ? fFile->freeBytes() : std::nullopt;
}

std::string rotatedPath(const std::string& path, RowSink::Time time, int number)
{
    const std::time_t seconds = std::chrono::duration_cast<std::chrono::seconds>(time).count();
    std::tm utc{};
    ::gmtime_r(&seconds, &utc);
    std::array<char, 32> stamp{};
    std::strftime(stamp.data(), stamp.size(), "-%Y%m%dT%H%M", &utc);
    const std::string inMinute = kit::secondsText(time % std::chrono::minutes(1)); // as in 7.250
    const std::filesystem::path whole(path);
    std::string name = whole.stem().string() + stamp.data() +
                       std::string(6 - inMinute.size(), '0') + inMinute + "Z";
    if (number > 1)
        name += "-" + std::to_string(number);
    return (whole.parent_path() / (name + whole.extension().string())).string();
}
