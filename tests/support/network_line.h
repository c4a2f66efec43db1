// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <random>
#include <string>
#include <string_view>

/// What one direction of a way through a network is like.
struct NetworkWay
{
    std::chrono::microseconds delay{0};  ///< of every byte
    std::chrono::microseconds jitter{0}; ///< up to so much more, evenly spread; the order is kept
    std::int64_t rate = 0;               ///< bit/s; 0: as much as comes
    /// So many bytes wait for the line at most, beside those that are in the air at this rate: then
    /// the sender waits. Without a rate these are all that may be under way.
    std::size_t queue = std::size_t{256} << 10;
    /// Nothing arrives for so long at the end of each such time; 0: always open. What has come
    /// until then arrives together, as behind a lost frame that is sent again.
    std::chrono::milliseconds pause{0};
    std::chrono::milliseconds pauseEvery{0};
    std::size_t drip = 0;   ///< bytes that arrive in each 10 ms, at most; 0: any number
    bool isStopped = false; ///< nothing arrives while this is so
};

/// One direction of one connection: decides what arrives when. It has no socket, thread or clock.
class NetworkLine
{
public:
    using Time = std::chrono::steady_clock::time_point;
    using Duration = std::chrono::nanoseconds;

    static constexpr std::size_t fSegment = 1448; ///< bytes that have one delay
    static constexpr std::chrono::milliseconds fDripTick{10};

    /// The times between pauses are counted from `start`.
    NetworkLine(const NetworkWay& way, Time start, unsigned seed);

    /// From now on it is like this: a change of delay, jitter or rate is for what comes.
    void change(const NetworkWay& way) { fWay = way; }

    /// How many bytes may be put in; 0: it is full.
    std::size_t room() const;
    /// At most `room()` bytes.
    void put(Time now, std::string_view bytes);
    /// Nothing more will be put in. The end arrives behind everything else.
    void end(Time now);

    /// When more arrives; Time::max(): not before something changes.
    Time dueAt() const;
    /// What has arrived by now and was not taken yet.
    std::string take(Time now);
    /// Whether everything was taken, and the end has arrived.
    bool isOver(Time now) const;

private:
    struct Piece
    {
        std::string bytes; ///< none: the end
        Time arrival;      ///< unless one before it is later
    };

    void append(Time now, std::string_view bytes);
    Time afterPause(Time time) const;

    NetworkWay fWay;
    const Time fStart;
    std::minstd_rand fRandom;
    std::deque<Piece> fPieces;
    std::size_t fHeld = 0; ///< bytes
    Time fFreeAt{};        ///< when the line can carry the next one
    Time fNextDrip{};
};
