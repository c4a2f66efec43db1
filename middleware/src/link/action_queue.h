// SPDX-License-Identifier: MIT
#pragma once

#include "link/link_actions.h"

#include <optional>
#include <vector>

namespace zo {

/// The actions that the machine of a link wants done, first come first served. Room is made
/// beforehand, where running out of memory does no harm; `push` then needs none.
class ActionQueue
{
public:
    /// Makes room for what any one event asks for, and for the ends of `calls` calls.
    void reserve(std::size_t calls);
    void push(LinkAction::Any action) noexcept;
    std::optional<LinkAction::Any> next() noexcept;

private:
    std::vector<LinkAction::Any> fActions;
    std::size_t fTaken = 0;
};

} // namespace zo
