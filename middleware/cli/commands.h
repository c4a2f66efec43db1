// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace kit {
class Output;
}
class ZoMemoryProxy;
class ZoValue;

/// The commands that ask a robot once. They throw ZoError when the robot fails, and what Output
/// throws.

/// Prints the keys that contain `part`, sorted by bytes.
void listKeys(ZoMemoryProxy& memory, const std::string& part, kit::Output& output);

/// Prints a record for each of `keys`.
void printValues(ZoMemoryProxy& memory, const std::vector<std::string>& keys, kit::Output& output);

/// The argument of getListData for `keys`.
ZoValue requestOf(const std::vector<std::string>& keys);

/// The values that `memory` has for `request`: just as many.
ZoValue valuesOf(ZoMemoryProxy& memory, const ZoValue& request);

/// KEY<tab>TYPE<tab>VALUE and an end of line.
std::string recordOf(const std::string& key, const ZoValue& value);
