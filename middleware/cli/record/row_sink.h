// SPDX-License-Identifier: MIT
#pragma once

#include "recording_file.h"

#include <kit/background_output.h>

#include <functional>
#include <memory>

/// When a recording goes on in another file.
struct Rotation
{
    std::uint64_t bytes = 0;           ///< 0: whatever the size
    std::chrono::milliseconds time{0}; ///< 0: however long

    bool isWanted() const { return bytes > 0 || time.count() > 0; }
};

/// Where the rows of a recording go. Errors are std::runtime_error.
class RowSink
{
public:
    using Time = RecordingFile::Time;

    using Tell = std::function<void(const std::string&)>;

    virtual ~RowSink() = default;

    /// Makes ready for rows of so many bytes, of which the last is of `time`. Whether another file
    /// than before begins with them, which shall stand alone.
    virtual bool beginsFile(std::size_t, Time) { return false; }
    /// Takes whole rows, of which the last is of `time`; those that it was made ready for.
    virtual void add(const std::string& rows, Time time) = 0;
    /// Returns when they are where they shall be.
    virtual void finish() {}
    /// Whether it can take more: a reader who pauses does not.
    virtual bool hasRoom() const { return true; }
    /// Whether the reader has taken all.
    virtual bool isTaken() const { return true; }
    /// Throws kit::OutputClosed when nobody wants them any more.
    virtual void checkReader() const {}
    /// Whether there are rows of an earlier recording before.
    virtual bool isContinued() const { return false; }

    virtual std::uint64_t bytes() const = 0; ///< in all
    virtual std::optional<std::uint64_t> freeBytes() const { return {}; }
    /// Of the file that is being written; empty when there is none.
    virtual std::string path() const { return {}; }
};

/// The standard output of the program.
class StreamSink : public RowSink
{
public:
    /// Rows that the reader has not taken yet, in bytes; beside them, those of one poll.
    static constexpr std::size_t fMostWaiting = 1 << 20;

    StreamSink(int descriptor, const std::string& header);

    void add(const std::string& rows, Time) override { write(rows); }
    void finish() override;
    bool hasRoom() const override { return fOutput.waiting() < fMostWaiting; }
    bool isTaken() const override { return fOutput.waiting() == 0; }
    void checkReader() const override;
    std::uint64_t bytes() const override { return fBytes; }

private:
    void write(const std::string& text);

    const int fDescriptor;
    kit::BackgroundOutput fOutput;
    std::uint64_t fBytes = 0;
};

/// One file, made or continued; another one in its place when somebody takes it away.
class FileSink : public RowSink
{
public:
    FileSink(const std::string& path, const RecordingFile::Form& form, Time now, Tell tell);

    bool beginsFile(std::size_t bytes, Time time) override;
    void add(const std::string& rows, Time time) override { fFile->add(rows, time); }
    void finish() override { fFile->finish(); }
    bool isContinued() const override { return fFile->isContinued(); }
    std::uint64_t bytes() const override { return fBytesBefore + fFile->size(); }
    std::optional<std::uint64_t> freeBytes() const override { return fFile->freeBytes(); }
    std::string path() const override { return fFile->path(); }

private:
    const RecordingFile::Form fForm;
    const Tell fTell;
    std::unique_ptr<RecordingFile> fFile;
    std::uint64_t fBytesBefore = 0;
};

/// File after file, each with the time at which it begins in its name: of DIR/run.csv it makes
/// DIR/run-20260314T092653.589Z.csv.
class RotatingSink : public RowSink
{
public:
    RotatingSink(const std::string& path, const RecordingFile::Form& form, const Rotation& rotation,
                 Tell tell);

    bool beginsFile(std::size_t bytes, Time time) override;
    void add(const std::string& rows, Time time) override { fFile->add(rows, time); }
    void finish() override;
    std::uint64_t bytes() const override { return fBytesBefore + (fFile ? fFile->size() : 0); }
    std::optional<std::uint64_t> freeBytes() const override;
    std::string path() const override { return fFile ? fFile->path() : std::string(); }

private:
    bool isDue(std::size_t moreBytes, Time time) const;
    void open(Time time);

    const std::string fPath;
    const RecordingFile::Form fForm;
    const Rotation fRotation;
    const Tell fTell;
    std::unique_ptr<RecordingFile> fFile;
    Time fBegin{0}; ///< of that
    std::uint64_t fBytesBefore = 0;
};

/// `path` with `time` before its extension; `number` tells those of one moment apart, from 1.
std::string rotatedPath(const std::string& path, RowSink::Time time, int number);
