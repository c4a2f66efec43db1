// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <functional>

/// The steady clock of a graph, of which only differences count: now and then it is set back by
/// whole seconds, together with all that was read from it, so that its readings stay small for
/// ever and single precision holds them.
class GraphClock
{
public:
    /// Milliseconds since some moment, never less than before.
    using Source = std::function<qint64()>;

    /// When it has reached fLimit, ms, it is set back by as many times fTurn, ms, as bring it
    /// below. At top speed a pixel is 1 ms. From 512 s to 1024 s single precision goes in steps
    /// of 0.06 ms, a sixteenth of that; each doubling of the readings would double them, to two
    /// pixels after five hours. Just before and just after it is set back the clock is within
    /// these seconds, where all readings are rounded alike: no sample moves by even a step.
    static constexpr qint64 fLimit = 1000 * 1000;
    static constexpr qint64 fTurn = 400 * 1000;

    /// Starts at 0 and goes as the machine's steady clock does.
    GraphClock();
    /// Starts at 0 and goes as `source` does.
    explicit GraphClock(Source source);

    /// The reading, ms.
    qint64 elapsed() const;

    /// Sets the clock back if it has reached fLimit. Returns by how many seconds, else 0.
    qint64 setBack();

private:
    Source fSource;
    qint64 fBase; ///< what the source says where the reading is 0
};
