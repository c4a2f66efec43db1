// SPDX-License-Identifier: MIT
// Feeds arbitrary bytes, in blocks of arbitrary sizes, to the reader of a server's replies, and
// compares what it makes of them with a slow reading by the letter.
#include "require.h"
#include "support/reference_replies.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

using namespace zo;

namespace {

/// Sizes of blocks, from 1 to `largest`, that follow from a number.
class Sizes
{
public:
    Sizes(unsigned seed, std::size_t largest) : fState(seed + 1U), fLargest(largest) {}

    std::size_t operator()()
    {
        fState = fState * 1664525U + 1013904223U;
        return 1 + (fState >> 8U) % fLargest;
    }

private:
    std::uint32_t fState;
    std::size_t fLargest;
};

void compare(const ReplyReading& reading, const ReplyReading& wanted)
{
    require(reading.end == wanted.end, "ends in another way");
    require(reading.log == wanted.log, "reads something else");
    require(reading.end != ReplyReading::Whole || reading.left == wanted.left,
            "reads on, or not far enough");
}

} // namespace

// The first byte tells how many replies are awaited, the second how the rest arrives.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    const int replies = data[0] % 8;
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 2, size - 2);
    const ReplyReading wanted = readByTheLetter(bytes, replies);
    compare(readInBlocks(bytes, replies, Sizes(data[1], 1)), wanted);
    compare(readInBlocks(bytes, replies, Sizes(data[1], 1U + data[1])), wanted);
    compare(readInBlocks(bytes, replies, [&] { return std::max<std::size_t>(size, 1); }), wanted);
    return 0;
}
