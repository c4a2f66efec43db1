// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace kit {

struct Password
{
    std::string text;
    std::string warning; ///< when others may read the file: what to do; else empty
};

/// The first line of the file at `path`, without its line break; at most 4096 bytes. Waits for
/// whoever writes into a pipe as long as `patience`. Throws UsageError, naming the path, when it
/// cannot be read or holds no password. Neither that nor the warning holds what the file does.
Password readPassword(const std::string& path,
                      std::chrono::milliseconds patience = std::chrono::seconds(30));

/// Overwrites what `secret` holds, and empties it.
void wipe(std::string& secret);

/// A text that is overwritten when it goes, and before it becomes another one. What is done to it
/// otherwise may leave copies behind.
class Secret : public std::string
{
public:
    Secret() = default;
    Secret(std::string_view text) : std::string(text) {}
    Secret(const Secret&) = default;
    Secret(Secret&&) = default;
    ~Secret() { wipe(*this); }
    Secret& operator=(const Secret& other) { return *this = std::string_view(other); }
    Secret& operator=(std::string_view text);
};

/// Wipes `secret`, which outlives it, when it goes, even by an exception.
class WipedAtEnd
{
public:
    explicit WipedAtEnd(std::string& secret) : fSecret(secret) {}
    ~WipedAtEnd() { wipe(fSecret); }
    WipedAtEnd(const WipedAtEnd&) = delete;
    WipedAtEnd& operator=(const WipedAtEnd&) = delete;

private:
    std::string& fSecret;
};

} // namespace kit
