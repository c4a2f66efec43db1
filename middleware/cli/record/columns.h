// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

/// A key of the robot, and what its column is called.
struct Column
{
    std::string key;
    std::string name;
};
using Columns = std::vector<Column>;

/// Columns of these keys, called like them.
Columns columnsOf(const std::vector<std::string>& keys);

/// `columns` with names in UTF-8, each of them once: one that was there before, or that of the
/// time, gets its key behind it, in parentheses, which `tell` hears of. The same key by the same
/// name is recorded once.
Columns withDistinctNames(const Columns& columns,
                          const std::function<void(const std::string&)>& tell);

/// Throws kit::UsageError when a table of `columns` would be taken for a recording of changes.
void checkNoChanges(const Columns& columns);

/// `name` as it stands in a recording: bytes that are no UTF-8 are taken for Latin-1.
std::string recordedName(const std::string& name);
