// SPDX-License-Identifier: MIT
#pragma once

#include "link/inquiry.h"
#include "memory/followed_values.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace zo {

/// What a read says about notices to a server that can send them.
enum class Telling
{
    Unknown, ///< the server sends none
    Refused, ///< none about what is read
    Wanted   ///< one when any of it is written
};

/// Which keys a round asks for, and the bytes that do so. Never changes, so that rounds which ask
/// for the same send the same.
class RoundPlan
{
public:
    using Keys = std::vector<FollowedValues::Entry*>;

    /// One MGET.
    struct Command
    {
        int first; ///< key
        int keys;
        std::size_t end; ///< behind its bytes
    };

    /// `keys` are asked for a thousand at a time, `singles` each by itself. On the server they are
    /// behind `prefix`.
    RoundPlan(Keys keys, const Keys& singles, Telling telling, std::string_view prefix = {});

    Telling telling() const { return fTelling; }
    /// All of them, the single ones last.
    const Keys& keys() const { return fKeys; }
    const std::vector<Command>& commands() const { return fCommands; }
    const SharedText& bytes() const { return fBytes; }
    /// What may go out between others: each command, with its announcement.
    const Inquiry::Parts& parts() const { return fParts; }
    /// A read without notices is announced by a command of its own, which is answered, too.
    int repliesPerCommand() const { return fTelling == Telling::Refused ? 2 : 1; }
    int replies() const { return repliesPerCommand() * static_cast<int>(fCommands.size()); }

private:
    void append(std::string_view prefix, int first, int keys, std::string& bytes);

    Keys fKeys;
    const Telling fTelling;
    std::vector<Command> fCommands;
    SharedText fBytes;
    Inquiry::Parts fParts;
};

} // namespace zo
