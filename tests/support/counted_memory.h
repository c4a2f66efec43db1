// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

/// Programs that compile counted_memory.cpp have its `operator new` in place of the system's.

/// What this thread has allocated so far.
struct Allocations
{
    std::size_t pieces = 0;
    std::size_t bytes = 0;
};
Allocations allocationsSoFar();

/// How many pieces of memory `action` takes.
template <class Action>
std::size_t allocationsOf(Action action)
{
    const std::size_t before = allocationsSoFar().pieces;
    action();
    return allocationsSoFar().pieces - before;
}

/// While it lives, counts the pieces of memory that this thread gives back with `text` in them.
class WatchFor
{
public:
    explicit WatchFor(std::string_view text);
    ~WatchFor();
    WatchFor(const WatchFor&) = delete;
    WatchFor& operator=(const WatchFor&) = delete;

    int found() const;
};

/// While it lives, this thread gets so many more pieces of memory; negative: as many as it wants.
class MemoryShortage
{
public:
    explicit MemoryShortage(int pieces);
    ~MemoryShortage();
    MemoryShortage(const MemoryShortage&) = delete;
    MemoryShortage& operator=(const MemoryShortage&) = delete;
};
