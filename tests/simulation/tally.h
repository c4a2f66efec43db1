// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/cluster_trouble.h"
#include "simulation/fault.h"
#include "simulation/network_kind.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>

/// What is counted over many schedules. A plain record, so that several processes can each fill
/// one; sums do not depend on who counted what.
struct Tally
{
    static constexpr int fMostEvents = 8192; ///< more in one schedule are a violation
    static constexpr int fTenths = 10;
    static constexpr std::size_t fMostCounted = 65535; ///< that or more, in schedules of followers

    std::uint64_t schedules = 0;
    std::uint64_t violations = 0;
    std::array<std::array<std::uint64_t, linkDoings>, faults> met{}; ///< fault by doing
    std::array<std::uint64_t, clusterTroubles> troubles{};
    std::array<std::uint64_t, fMostCounted + 1> events{}; ///< schedules with so many events
    std::array<std::uint64_t, fTenths> waits{};           ///< where in their bounds they lay

    /// Calls of followers while nothing goes wrong.
    struct Steady
    {
        std::uint64_t calls = 0;
        std::uint64_t answered = 0;
    };
    static constexpr std::array<int, 3> fRhythms{100, 300, 1000}; ///< their bounds, in ms
    static constexpr std::size_t fRhythmCount = fRhythms.size() + 1;
    std::array<std::array<Steady, fRhythmCount>, networkKinds> steady{};

    void meet(Fault fault, LinkDoing doing)
    {
        ++met[static_cast<std::size_t>(fault)][static_cast<std::size_t>(doing)];
    }
    /// Of those with such a period.
    Steady& steadyOf(NetworkKind kind, std::chrono::milliseconds period)
    {
        const auto* const bound =
            std::upper_bound(fRhythms.begin(), fRhythms.end(), period.count());
        return steady[static_cast<std::size_t>(kind)][bound - fRhythms.begin()];
    }
    /// A schedule had so many events.
    void count(std::uint64_t eventsOfIt)
    {
        ++schedules;
        ++events[std::min<std::uint64_t>(eventsOfIt, fMostCounted)];
    }
    void add(const Tally& other);
    std::uint64_t medianEvents() const;
    /// Whether random waits are spread evenly over their bounds, as far as there are enough.
    bool hasEvenWaits() const;
    /// How many possible cells were met less than `least` times.
    int cellsBelow(std::uint64_t least) const;
    /// How many cells were met that `whyImpossible` says cannot be.
    int impossibleCellsMet() const;
};

/// Writes fault by doing on the standard output; impossible cells are "-".
void printMet(const Tally& tally);
