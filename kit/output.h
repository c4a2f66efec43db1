// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <stdexcept>
#include <string>

namespace kit {

/// The output cannot be written; the text says why.
class OutputError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The reader of the output is gone, which needs no message.
class OutputClosed : public OutputError
{
public:
    OutputClosed();
};

/// Gathers lines and writes them to a file descriptor, which stays the caller's. SIGPIPE must be
/// ignored. Every operation throws OutputError or OutputClosed when the text cannot be written.
class Output
{
public:
    explicit Output(int descriptor);

    /// Adds `text`; may write what is there so far.
    void add(const std::string& text);
    /// Writes all that was added.
    void flush();
    /// Waits until then; throws OutputClosed as soon as the reader is gone.
    void waitUntil(std::chrono::steady_clock::time_point then) const;

private:
    int fDescriptor;
    std::string fText;
};

} // namespace kit
