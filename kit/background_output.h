// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <mutex>
#include <string>

namespace kit {

/// Writes to a file descriptor, which stays the caller's, by a thread of its own: a terminal that
/// is stopped, or a reader that pauses, holds up nobody. SIGPIPE must be ignored; signals that
/// shall reach another thread must be blocked before. What is not written in all of the patience
/// when this is destroyed may stay so.
class BackgroundOutput
{
public:
    static constexpr std::chrono::seconds fPatience{1}; ///< at the end

    explicit BackgroundOutput(int descriptor);
    ~BackgroundOutput();
    BackgroundOutput(const BackgroundOutput&) = delete;
    BackgroundOutput& operator=(const BackgroundOutput&) = delete;

    /// Hands `text` over. Throws OutputError or OutputClosed when an earlier one could not be
    /// written.
    void add(const std::string& text);
    static constexpr std::size_t fMuch = 4096; ///< bytes
    /// The same for a text that may be lost: it is when so much is waiting already, and after a
    /// failure.
    void offer(const std::string& text, std::size_t much = fMuch);
    /// How many bytes are not written yet, of a text that is begun all. For callers to stop at.
    std::size_t waiting() const;
    /// Waits until all is written, as long as the patience lasts. Throws what add does.
    void finish();

private:
    void waitForEnd(std::unique_lock<std::mutex>& lock) const;

    struct Shared;

    const std::shared_ptr<Shared> fShared; ///< with a thread that may outlive this
};

} // namespace kit
