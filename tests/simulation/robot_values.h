// SPDX-License-Identifier: MIT
#pragma once

#include <zo/value.h>

#include <cstdint>
#include <string>

/// Values that tell whose they are: no two that a simulated robot ever holds are alike.

/// Which key, and which of all values that were ever written. 0: none, the key is not there.
using ValueId = std::int64_t;

constexpr ValueId noValue = 0;
/// Texts that are there but too large to be read; their value is invalid, too.
constexpr ValueId largeValue = -1;

ValueId makeValueId(int key, int version);

std::string keyName(int key);
/// The number of the key called `name`; -1 when there is none.
int keyNumber(std::string_view name);

/// What the robot's memory holds for `id`: JSON of some kind.
std::string robotText(ValueId id);
/// The same, appended to `text`.
void appendRobotText(ValueId id, std::string& text);
/// The value that it is read as.
ZoValue robotValue(ValueId id);
/// The inverse; -2 for what no robot text is read as.
ValueId valueIdOf(const ZoValue& value);
/// The inverse of robotText; -2 for what is no such text.
ValueId valueIdOfText(std::string_view text);
