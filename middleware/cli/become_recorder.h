// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

/// The program zo-record takes the place of this one, with these words: the one beside it, or else
/// that of PATH. Throws std::runtime_error when there is none.
[[noreturn]] void becomeRecorder(std::vector<std::string> words);
