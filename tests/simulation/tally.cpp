// SPDX-License-Identifier: MIT
#include "simulation/tally.h"

#include <cstdio>
#include <numeric>

namespace {

constexpr std::uint64_t enoughWaits = 20000;

bool isPossible(int fault, int doing)
{
    return !whyImpossible(static_cast<Fault>(fault), static_cast<LinkDoing>(doing));
}

/// How many cells of faults there are for which `holds(isPossible, how often they were met)`.
template <class Holds>
int countCells(const Tally& tally, Holds holds)
{
    int cells = 0;
    for (int fault = 1; fault < faults; ++fault) {
        for (int doing = 0; doing < linkDoings; ++doing)
            cells += holds(isPossible(fault, doing), tally.met[fault][doing]) ? 1 : 0;
    }
    return cells;
}

} // namespace

void Tally::add(const Tally& other)
{
    schedules += other.schedules;
    violations += other.violations;
    for (std::size_t i = 0; i < met.size(); ++i) {
        for (std::size_t j = 0; j < met[i].size(); ++j)
            met[i][j] += other.met[i][j];
    }
    for (std::size_t i = 0; i < troubles.size(); ++i)
        troubles[i] += other.troubles[i];
    for (std::size_t i = 0; i < events.size(); ++i)
        events[i] += other.events[i];
    for (std::size_t i = 0; i < waits.size(); ++i)
        waits[i] += other.waits[i];
    for (std::size_t i = 0; i < steady.size(); ++i) {
        for (std::size_t j = 0; j < steady[i].size(); ++j) {
            steady[i][j].calls += other.steady[i][j].calls;
            steady[i][j].answered += other.steady[i][j].answered;
        }
    }
}

std::uint64_t Tally::medianEvents() const
{
    const auto all = std::accumulate(events.begin(), events.end(), std::uint64_t{0});
    std::uint64_t count = 0;
    for (std::size_t i = 0; i < events.size(); ++i) {
        count += events[i];
        if (2 * count >= all)
            return i;
    }
    return 0;
}

bool Tally::hasEvenWaits() const
{
    const auto all = std::accumulate(waits.begin(), waits.end(), std::uint64_t{0});
    if (all < enoughWaits)
        return true;
    for (const std::uint64_t tenth : waits) {
        if (tenth * 12 < all || tenth * 8 > all)
            return false;
    }
    return true;
}

int Tally::cellsBelow(std::uint64_t least) const
{
    return countCells(*this, [least](bool isPossible, std::uint64_t count) {
        return isPossible && count < least;
    });
}

int Tally::impossibleCellsMet() const
{
    return countCells(
        *this, [](bool isPossible, std::uint64_t count) { return !isPossible && count > 0; });
}

void printMet(const Tally& tally)
{
    std::printf("%-22s", "met by a link in state");
    for (int doing = 0; doing < linkDoings; ++doing)
        std::printf("%9s", nameOf(static_cast<LinkDoing>(doing)));
    std::printf("\n");
    for (int fault = 1; fault < faults; ++fault) {
        std::printf("%-22s", nameOf(static_cast<Fault>(fault)));
        for (int doing = 0; doing < linkDoings; ++doing) {
            const auto count = tally.met[fault][doing];
            if (isPossible(fault, doing))
                std::printf("%9llu", static_cast<unsigned long long>(count));
            else
                std::printf("%9s", count == 0 ? "-" : "- (met!)");
        }
        std::printf("\n");
    }
}
