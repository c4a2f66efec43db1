// SPDX-License-Identifier: MIT
#include "memory/round_plan.h"

#include "memory/keys_per_command.h"
#include "wire/request.h"

#include <algorithm>
#include <string>
#include <utility>

namespace zo {

RoundPlan::RoundPlan(Keys keys, const Keys& singles, Telling telling, std::string_view prefix)
    : fKeys(std::move(keys)), fTelling(telling)
{
    const int together = static_cast<int>(fKeys.size());
    fKeys.insert(fKeys.end(), singles.begin(), singles.end());
    const int all = static_cast<int>(fKeys.size());
    std::string bytes;
    for (int first = 0; first < together; first += keysPerCommand)
        append(prefix, first, std::min(keysPerCommand, together - first), bytes);
    for (int single = together; single < all; ++single)
        append(prefix, single, 1, bytes);
    fBytes = sharedText(std::move(bytes));
    std::vector<RequestPart> parts;
    parts.reserve(fCommands.size());
    for (const Command& command : fCommands)
        parts.push_back({command.end, repliesPerCommand()});
    fParts = std::make_shared<const std::vector<RequestPart>>(std::move(parts));
}

void RoundPlan::append(std::string_view prefix, int first, int keys, std::string& bytes)
{
    if (fTelling == Telling::Refused)
        appendCommand({"CLIENT", "CACHING", "NO"}, bytes);
    beginCommand(static_cast<std::size_t>(keys) + 1, bytes);
    appendWord("MGET", bytes);
    for (int key = first; key < first + keys; ++key)
        appendWord(prefix, fKeys[key]->first, bytes);
    fCommands.push_back({first, keys, bytes.size()});
}

} // namespace zo
