// SPDX-License-Identifier: MIT
#include "memory/store_request.h"

#include "memory/key_text.h"
#include "memory/keys_per_command.h"
#include "memory/memory_arguments.h"
#include "wire/limits.h"
#include "wire/request.h"

#include <zo/error.h>

#include <algorithm>
#include <vector>

namespace zo {

namespace {

std::string storableText(std::string_view prefix, const std::string& key, const ZoValue& value)
{
    std::string text = textOf(key, value);
    checkStorable(prefix, key, text);
    return text;
}

} // namespace

void checkStorable(std::string_view prefix, const std::string& key, const std::string& text)
{
    checkKey(prefix, key);
    if (text.size() > ReplyLimits::fMaxValue)
        throw ZoError("value for " + quotedKey(key) + " is larger than " +
                      inMebibytes(ReplyLimits::fMaxValue));
}

StoreRequest encodeStoreRequest(const ZoValue& pairs, std::string_view prefix)
{
    StoreRequest request;
    const int count = pairs.getSize();
    request.keys.reserve(count);
    std::vector<RequestPart> parts;
    std::string bytes;
    std::vector<std::string> texts;
    for (int first = 0; first < count; first += keysPerCommand) {
        const int end = std::min(first + keysPerCommand, count);
        texts.clear();
        for (int i = first; i < end; ++i)
            texts.push_back(storableText(prefix, pairs[i][0].asString(), pairs[i][1]));
        beginCommand(2 * texts.size() + 1, bytes);
        appendWord("MSET", bytes);
        for (int i = first; i < end; ++i) {
            request.keys.push_back(pairs[i][0].asString());
            appendWord(prefix, request.keys.back(), bytes);
            appendWord(texts[static_cast<std::size_t>(i - first)], bytes);
        }
        parts.push_back({bytes.size(), 1});
    }
    request.bytes = sharedText(std::move(bytes));
    request.parts = std::make_shared<const std::vector<RequestPart>>(std::move(parts));
    return request;
}

} // namespace zo
