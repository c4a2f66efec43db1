// SPDX-License-Identifier: MIT
#pragma once

#include "columns.h"

/// The watched keys of the panel's configuration file at `path`, by their aliases. Throws
/// kit::UsageError, naming the file, when it cannot be read, is none, lacks a key's name or alias,
/// or watches nothing.
Columns watchedColumns(const std::string& path);
