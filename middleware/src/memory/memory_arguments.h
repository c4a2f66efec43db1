// SPDX-License-Identifier: MIT
#pragma once

#include <zo/value.h>

#include <string>

namespace zo {

/// Checks of what callers hand to a memory module. They throw ZoError, naming the method or key.

/// Number of keys that `request`, the argument of getListData, asks for.
int requestedCount(const ZoValue& request);

/// The key that element `index` of `request` asks for.
const std::string& requestedKey(const ZoValue& request, int index);

/// What the keys end with that `arguments` of getDataListName ask for; without a text, all keys.
std::string endingOf(const ZoValue& arguments);

/// `pairs`, the argument of setListData, is an array of arrays [key, value].
void checkPairs(const ZoValue& pairs);

/// The key in `arguments` of the method `method`, an array [key, something].
const std::string& keyToSet(const char* method, const ZoValue& arguments);

/// The text in `arguments` of setText, in its second element.
const std::string& textToSet(const ZoValue& arguments);

/// The text that stands for `value` in a memory. Throws ZoError, naming `key`, when there is none.
std::string textOf(const std::string& key, const ZoValue& value);

} // namespace zo
