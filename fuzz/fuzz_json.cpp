// SPDX-License-Identifier: MIT
// Feeds arbitrary bytes to the reading of a robot's values, and their value back to the writing.
#include "require.h"
#include "value/json.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

using namespace zo;

namespace {

/// Whether `shown` is `whole`, or the beginning of it that a table shows, and dots.
bool isCutOf(const std::string& shown, const std::string& whole)
{
    constexpr std::size_t limit = 1024;
    constexpr std::size_t partOfCharacter = 3;
    if (whole.size() <= limit)
        return shown == whole;
    const std::size_t kept = shown.rfind("...");
    return kept + 3 == shown.size() && kept <= limit && kept >= limit - partOfCharacter &&
           whole.compare(0, kept, shown, 0, kept) == 0;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const ZoValue value = decodeJson(text);
    require(decodeJson(encodeJson(value)) == value, "a value does not read back the same");
    require(isCutOf(value.toString(ZoNormal), value.toString(ZoWhole)), "a text is cut wrongly");
    return 0;
}
