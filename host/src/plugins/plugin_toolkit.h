// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

/// The first number of the Qt that the plug-in in `file` was built with, as the file itself says;
/// none of its code runs. Nothing when the file says nothing of the kind, or cannot be read. A
/// library that speaks of several is for this program's, if that is one.
std::optional<int> pluginToolkit(const QString& file);
