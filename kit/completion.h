// SPDX-License-Identifier: MIT
#pragma once

#include <kit/option_words.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kit {

/// What may stand in place of the last word of a line that is still being written.
struct Completion
{
    std::vector<std::string> texts; ///< whole words, fitting what is there of the last one or not
    bool isFile = false;            ///< it is the name of a file: shells know these
};

/// Takes options off `words`, which is not empty, and of which all but the last are whole. Returns
/// what the last one may be when it is an option or an option's value. Nothing: `words` is at an
/// operand, or at "--", which may be the last word. Throws UsageError as readOptions does.
std::optional<Completion> completeOptions(Words& words, const Options& options);

/// Given the words behind the program's name, of which the last is being written. May throw.
using Complete = std::function<Completion(const std::vector<std::string>& words)>;

/// Whether the words behind a program's name are those of a shell that asks how a line goes on:
///   --complete WORD... LAST       prints what may stand there for LAST, and begins as it does,
///                                 a line each
///   --complete-line LINE BREAKS   the same for a line of bash up to the cursor: what may stand
///                                 there behind the last of the characters BREAKS, quoted as
///                                 bash wants it
/// The scripts in packaging/completions ask so.
bool isAskedToComplete(const std::vector<std::string>& words);

constexpr int exitWantsFile = 3; ///< the shell may complete the name of a file

/// Answers that, and returns the exit status. A person waits at a prompt: what fails or takes
/// longer than a moment ends without a word.
int answerShell(const std::vector<std::string>& words, const Complete& complete);

} // namespace kit
