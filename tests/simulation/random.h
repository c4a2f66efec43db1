// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <iterator>

/// Random numbers that follow from a seed alone, the same with every compiler and library
/// (SplitMix64).
class Random
{
public:
    explicit Random(std::uint64_t seed) : fState(seed) {}

    std::uint64_t next()
    {
        std::uint64_t z = fState += 0x9e3779b97f4a7c15U;
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9U;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebU;
        return z ^ (z >> 31);
    }

    /// From 0 to `count` - 1; the tiny preference of the low ones does no harm here.
    std::size_t below(std::size_t count) { return next() % count; }
    /// Both ends belong to it.
    int between(int least, int most)
    {
        return least + static_cast<int>(below(static_cast<std::size_t>(most - least) + 1));
    }
    bool chance(int percent) { return between(1, 100) <= percent; }

    std::chrono::nanoseconds upTo(std::chrono::nanoseconds most)
    {
        return std::chrono::nanoseconds(below(static_cast<std::size_t>(most.count()) + 1));
    }
    template <class List>
    const auto& pick(const List& list)
    {
        return list[below(std::size(list))];
    }

private:
    std::uint64_t fState;
};
