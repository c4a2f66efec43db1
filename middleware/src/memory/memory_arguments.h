// SPDX-License-Identifier: MIT
#pragma once

#include <zo/value.h>

#include <string>

/// Checks of what callers hand to a memory module. They throw ZoError, naming the method.

/// Number of keys that `request`, the argument of getListData, asks for.
int requestedCount(const ZoValue& request);

/// The key that element `index` of `request` asks for.
const std::string& requestedKey(const ZoValue& request, int index);

/// Number of pairs in `pairs`, the argument of setListData, which are all arrays [key, value].
int pairsToSet(const ZoValue& pairs);

/// The key in `arguments` of the method `method`, an array [key, something].
const std::string& keyToSet(const char* method, const ZoValue& arguments);

/// The value in `arguments` of setData, in its second element.
const ZoValue& valueToSet(const ZoValue& arguments);

/// The text in `arguments` of setText, in its second element.
const std::string& textToSet(const ZoValue& arguments);
