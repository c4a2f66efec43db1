// SPDX-License-Identifier: MIT
#pragma once

#include "disk_sync.h"

#include <kit/descriptor.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

/// A file of whole rows, which are on the disk soon after they were written. Errors are
/// std::runtime_error, and name the file.
class RecordingFile
{
public:
    using Time = std::chrono::milliseconds;

    /// What is in a file.
    struct Form
    {
        std::string header;
        std::size_t fields; ///< of each row
    };

    /// Opens the file at `path`, which nobody else may record into: makes it, or goes on behind the
    /// last row of one that has this form and ends before `now`. Throws when there is another file.
    RecordingFile(const std::string& path, const Form& form, Time now);
    /// Makes it; nothing when there is something at `path`.
    static std::unique_ptr<RecordingFile> make(const std::string& path, const Form& form);

    /// Appends whole rows, of which the last is of `time`. When that fails, as on a full disk, the
    /// file is left with the rows before them, and this throws.
    void add(const std::string& rows, Time time);
    /// Returns when all is on the disk. Throws when the file was deleted meanwhile, too.
    void finish();

    /// What others have made of the file.
    enum class Place
    {
        Here,
        Moved,
        Deleted
    };
    /// Throws when others have written into it, or cut it.
    Place place() const;

    const std::string& path() const { return fPath; }
    std::uint64_t size() const { return fSize; }
    bool isContinued() const { return fIsContinued; }
    std::uint64_t cutBytes() const { return fCutBytes; } ///< of a row that was not whole
    std::optional<std::uint64_t> freeBytes() const;

private:
    RecordingFile(const std::string& path, kit::Descriptor file, const Form& form);

    void checkSize(std::int64_t size) const;
    void begin(const std::string& header);
    void goOn(const Form& form, Time now);
    void checkLastRow(const std::string& row, const Form& form, Time now,
                      const std::string& remedy);
    void write(const std::string& text);
    [[noreturn]] void fail(const std::string& what, int error, const std::string& rest = {}) const;
    [[noreturn]] void endWhole(int error);

    const std::string fPath;
    const kit::Descriptor fFile;
    std::uint64_t fSize = 0;
    std::optional<Time> fLastTime;
    bool fIsContinued = false;
    std::uint64_t fCutBytes = 0;
    DiskSync fSync;
};
