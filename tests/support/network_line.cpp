// SPDX-License-Identifier: MIT
#include "support/network_line.h"

#include <algorithm>

NetworkLine::NetworkLine(const NetworkWay& way, Time start, unsigned seed)
    : fWay(way), fStart(start), fRandom(seed)
{
}

std::size_t NetworkLine::room() const
{
    const std::chrono::duration<double> inAir = fWay.delay + fWay.jitter;
    const double carried = static_cast<double>(fWay.rate) / 8 * inAir.count();
    const std::size_t most = fWay.queue + static_cast<std::size_t>(carried);
    return most - std::min(most, fHeld);
}

void NetworkLine::put(Time now, std::string_view bytes)
{
    fHeld += bytes.size();
    while (!bytes.empty()) {
        const std::string_view segment = bytes.substr(0, fSegment);
        append(now, segment);
        bytes.remove_prefix(segment.size());
    }
}

void NetworkLine::end(Time now)
{
    append(now, {});
}

void NetworkLine::append(Time now, std::string_view bytes)
{
    constexpr std::int64_t nanosecondsOfByte = std::int64_t{8} * 1000000000;
    const auto size = static_cast<std::int64_t>(bytes.size());
    const Duration onLine(fWay.rate > 0 ? size * nanosecondsOfByte / fWay.rate : 0);
    std::uniform_int_distribution<std::int64_t> more(0, Duration(fWay.jitter).count());
    fFreeAt = std::max(fFreeAt, now) + onLine;
    fPieces.push_back({std::string(bytes), fFreeAt + fWay.delay + Duration(more(fRandom))});
}

NetworkLine::Time NetworkLine::afterPause(Time time) const
{
    if (fWay.pauseEvery.count() <= 0)
        return time;
    const Duration cycle = fWay.pauseEvery;
    const Duration within = (time - fStart) % cycle;
    return within >= cycle - fWay.pause ? time + (cycle - within) : time;
}

NetworkLine::Time NetworkLine::dueAt() const
{
    if (fPieces.empty() || fWay.isStopped)
        return Time::max();
    const Time arrival = fPieces.front().arrival;
    return afterPause(fWay.drip > 0 ? std::max(arrival, fNextDrip) : arrival);
}

std::string NetworkLine::take(Time now)
{
    std::string taken;
    if (fWay.isStopped || afterPause(now) > now || (fWay.drip > 0 && now < fNextDrip))
        return taken;
    const std::size_t most = fWay.drip > 0 ? fWay.drip : fHeld;
    while (taken.size() < most && !fPieces.empty() && fPieces.front().arrival <= now) {
        std::string& bytes = fPieces.front().bytes;
        if (bytes.empty())
            break; // the end stays
        const std::size_t size = std::min(bytes.size(), most - taken.size());
        taken.append(bytes, 0, size);
        bytes.erase(0, size);
        if (bytes.empty())
            fPieces.pop_front();
    }
    fHeld -= taken.size();
    if (fWay.drip > 0 && !taken.empty())
        fNextDrip = now + fDripTick;
    return taken;
}

bool NetworkLine::isOver(Time now) const
{
    return !fPieces.empty() && fPieces.front().bytes.empty() && dueAt() <= now;
}
