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

/// For a program whose answer only its parent wants: it ends with its parent, and at once when
/// nobody reads standard output any more.
void endWithParent();

using Tell = std::function<void(const std::string& message)>;

/// Runs `run`, and returns the exit status that it does. When it throws, tells why in the name of
/// `program`, or by `tellWhy`, and returns exitWrongUse for a UsageError and exitFailed for all
/// else. Says nothing of OutputClosed: whoever read the output has what they wanted.
int runProgram(const std::string& program, const std::function<int()>& run,
               const Tell& tellWhy = {});

/// "PROGRAM: MESSAGE" as one line.
std::string lineOf(const std::string& program, const std::string& message);

/// Writes that to standard error, in one piece.
void tell(const std::string& program, const std::string& message);

/// The same, when there is a warning to tell.
void tellWarning(const std::string& program, const std::string& warning);

/// Writes `text` to standard output. Throws what Output does.
void print(const std::string& text);

/// The process ends after so many microseconds, at once and with exit status 0, whatever it waits
/// for and whatever is not written yet.
void endWellAfter(int time);

/// From now on SIGINT and SIGTERM end the process at once with exit status 0, whatever it waits
/// for; what is not yet written is not wanted any more.
void endWellOnStopSignals();

} // namespace kit
