// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// The memory of this program, counted: who made what, and how much of it is left. Memory can be
/// made to run out for the link. Under address and data-race checks, which count by themselves,
/// it does neither.
class Heap
{
public:
    /// While one exists, what is made is the link's, and may run out.
    class OfLink
    {
    public:
        OfLink() { setLink(true); }
        ~OfLink() { setLink(false); }
        OfLink(const OfLink&) = delete;
        OfLink& operator=(const OfLink&) = delete;
    };

    /// Bytes that were made for the link and are still in use.
    static std::int64_t inUseByLink();

    /// The link's allocation number `number` from now on, from 0, throws std::bad_alloc; -1: none.
    static void failIn(int number);
    /// Whether one has thrown since the last question.
    static bool takeFailure();

private:
    static void setLink(bool isLink);
};
