// SPDX-License-Identifier: MIT
#include "memory/store_request.h"

#include "memory/key_text.h"
#include "memory/keys_per_command.h"
#include "memory/memory_arguments.h"
#include "wire/limits.h"
#include "wire/request.h"

#include <zo/error.h>

#include <algorithm>
#include <string_view>
#include <vector>

namespace zo {

namespace {

std::string storableText(const std::string& key, const ZoValue& value)
{
    std::string text = textOf(key, value);
    checkStorable(key, text);
    return text;
}

} // namespace

void checkStorable(const std::string& key, const std::string& text)
{
    checkKey(key);
    if (text.size() > ReplyLimits::fMaxValue)
        throw ZoError("value for " + quotedKey(key) + " is larger than " +
                      inMebibytes(ReplyLimits::fMaxValue));
}

StoreRequest encodeStoreRequest(const ZoValue& pairs)
{
    StoreRequest request;
    const int count = pairs.getSize();
    request.keys.reserve(count);
    std::vector<RequestPart> parts;
    std::string bytes;
    std::vector<std::string> texts;
    std::vector<std::string_view> words;
    for (int first = 0; first < count; first += keysPerCommand) {
        const int end = std::min(first + keysPerCommand, count);
        texts.clear();
        for (int i = first; i < end; ++i)
            texts.push_back(storableText(pairs[i][0].asString(), pairs[i][1]));
        words.assign(1, "MSET");
        for (int i = first; i < end; ++i) {
            request.keys.push_back(pairs[i][0].asString());
            words.push_back(request.keys.back());
            words.push_back(texts[static_cast<std::size_t>(i - first)]);
        }
        appendCommand(words, bytes);
        parts.push_back({bytes.size(), 1});
    }
    request.bytes = sharedText(std::move(bytes));
    request.parts = std::make_shared<const std::vector<RequestPart>>(std::move(parts));
    return request;
}

} // namespace zo
