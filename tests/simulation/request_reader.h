// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <vector>

/// Takes the first command off `bytes`, if all of it is there. Its words stay where they are.
/// Throws Violation for what is no command: a link never sends such a thing.
bool takeCommand(std::string_view& bytes, std::vector<std::string_view>& words);
