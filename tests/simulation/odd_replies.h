// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

/// A value that is too large to be read.
const std::string& largeText();

/// Bytes that answer nothing, whatever was asked.
const std::vector<std::string>& garbageReplies();

/// What a server may say unasked.
const std::vector<std::string>& pushReplies();
