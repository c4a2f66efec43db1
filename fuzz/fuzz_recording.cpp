// SPDX-License-Identifier: MIT
// Feeds arbitrary bytes to the playing of recordings: the fields, the steps, and their values.
#include "replay/recorded_file.h"
#include "require.h"

#include <kit/descriptor.h>
#include <zo/error.h>
#include <zo/json.h>

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace {

/// What a reading found: enough to tell whether another one found the same.
struct Found
{
    std::size_t steps = 0;
    std::size_t cells = 0;
    std::size_t bytes = 0;

    bool operator==(const Found& other) const
    {
        return steps == other.steps && cells == other.cells && bytes == other.bytes;
    }
};

void check(const ReplayStep::Cell& cell, const RecordedFile& recording)
{
    require(cell.key < recording.keys().size(), "a cell has no key");
    const ZoValue value = ZoJson::valueOf(cell.text);
    require(ZoJson::valueOf(ZoJson::textOf(value)) == value, "a value does not read back the same");
}

Found readAll(RecordedFile& recording)
{
    Found found;
    ReplayStep step;
    for (auto last = std::chrono::milliseconds::min(); recording.next(step); last = step.time) {
        require(step.time >= last, "time runs backwards");
        ++found.steps;
        for (const ReplayStep::Cell& cell : step.cells) {
            check(cell, recording);
            ++found.cells;
            found.bytes += cell.text.size();
        }
    }
    return found;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const kit::Descriptor file(::memfd_create("recording", MFD_CLOEXEC));
    require(::write(file.get(), data, size) == static_cast<ssize_t>(size), "no memory for a file");
    try {
        RecordedFile recording("/proc/self/fd/" + std::to_string(file.get()));
        const Found found = readAll(recording);
        recording.rewind();
        require(readAll(recording) == found, "it is not the same when it is read again");
    } catch (const std::runtime_error&) {
        // It says what is wrong with the file.
    }
    return 0;
}
