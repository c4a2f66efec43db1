// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

namespace kit {

constexpr int standardOutput = 1;

/// How a program ends.
constexpr int exitDone = 0;
constexpr int exitFailed = 1;
constexpr int exitWrongUse = 2;

/// To be called first: a write into a closed pipe becomes an error, not the end of the process,
/// the end of a child is told even if the caller ignored such news, and nothing that the program
/// opens can get the number of a standard stream that the caller left closed.
void prepareProcess();

/// Runs `run`, and returns the exit status that it does. When it throws, tells why in the name of
/// `program` and returns exitWrongUse for a UsageError and exitFailed for all else. Says nothing of
/// OutputClosed: whoever read the output has what they wanted.
int runProgram(const std::string& program, const std::function<int()>& run);

/// Writes "PROGRAM: MESSAGE" as one line to standard error, in one piece.
void tell(const std::string& program, const std::string& message);

/// The same, when there is a warning to tell.
void tellWarning(const std::string& program, const std::string& warning);

/// Writes `text` to standard output. Throws what Output does.
void print(const std::string& text);

/// From now on SIGINT and SIGTERM end the process at once with exit status 0, whatever it waits
/// for; what is not yet written is not wanted any more.
void endWellOnStopSignals();

} // namespace kit
