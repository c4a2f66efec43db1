// SPDX-License-Identifier: MIT
#include "memory/store_request.h"

#include "memory/key_text.h"
#include "memory/memory_arguments.h"
#include "value/json.h"
#include "wire/limits.h"
#include "wire/request.h"

#include <zo/error.h>

#include <algorithm>
#include <string_view>
#include <vector>

std::string storableText(const std::string& key, const ZoValue& value)
{
    std::string text;
    try {
        text = encodeJson(value);
    } catch (const ZoError& error) {
        throw ZoError("value for " + quotedKey(key) + ": " + error.toString());
    }
    checkStorable(key, text);
    return text;
}

void checkStorable(const std::string& key, const std::string& text)
{
    checkKey(key);
    if (text.size() > ReplyLimits::fMaxValue)
        throw ZoError("value for " + quotedKey(key) + " is larger than " +
                      std::to_string(ReplyLimits::fMaxValue >> 20) + " MiB");
}

StoreRequest encodeStoreRequest(const ZoValue& pairs)
{
    StoreRequest request;
    request.pairs = pairsToSet(pairs);
    auto bytes = std::make_shared<std::string>();
    std::vector<std::string> texts;
    std::vector<std::string_view> words;
    for (int first = 0; first < request.pairs; first += StoreRequest::fChunk) {
        const int end = std::min(first + StoreRequest::fChunk, request.pairs);
        texts.clear();
        for (int i = first; i < end; ++i)
            texts.push_back(storableText(pairs[i][0].asString(), pairs[i][1]));
        words.assign(1, "MSET");
        for (int i = first; i < end; ++i) {
            words.push_back(pairs[i][0].asString());
            words.push_back(texts[static_cast<std::size_t>(i - first)]);
        }
        appendCommand(words, *bytes);
        ++request.commands;
    }
    request.bytes = std::move(bytes);
    return request;
}
