// SPDX-License-Identifier: MIT
#pragma once

#include <zo/value.h>

#include <memory>
#include <string>

/// What a robot's memory stores under `key` for `value`. Throws ZoError when there is no such
/// text, or when checkStorable refuses it.
std::string storableText(const std::string& key, const ZoValue& value);

/// Throws ZoError, naming `key`, when the key or its `text` is larger than a reply may be: it
/// could be stored, but never read again.
void checkStorable(const std::string& key, const std::string& text);

/// Many values on their way into a robot's memory: commands of so many pairs at most that they do
/// not hold up the robot's other clients.
struct StoreRequest
{
    static constexpr int fChunk = 1000;

    std::shared_ptr<const std::string> bytes;
    int commands = 0;
    int pairs = 0;
};

/// The argument of setListData, encoded. Throws ZoError when it is malformed or cannot be stored.
StoreRequest encodeStoreRequest(const ZoValue& pairs);
