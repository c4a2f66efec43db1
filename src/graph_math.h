// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QPair>
#include <QPoint>

#include <algorithm>
#include <limits>

/// The arithmetic of the graph, free of widgets. Times are seconds of the graph's own clock,
/// positions are pixels from the top left corner, speeds are pixels per second.

/// One sample of a curve: its time in s, then its value, which may be NaN or an infinity.
using TimeValue = QPair<double, double>;

/// The vertical range of a plot: the values at its bottom and at its top row.
struct ValueRange
{
    double bottom;
    double top;
};

/// `number` cut to a whole number toward zero, moved into the range of int: what lies beyond
/// it, infinities included, becomes INT_MIN or INT_MAX. NaN becomes INT_MIN.
inline int truncated(double number)
{
    constexpr double lowest = std::numeric_limits<int>::min();
    constexpr double highest = std::numeric_limits<int>::max();
    const double atLeast = number > lowest ? number : lowest;
    return static_cast<int>(atLeast < highest ? atLeast : highest);
}

/// Where samples fall in a plot of a given size at a given moment.
struct PlotScale
{
    int width;            ///< px; the column of `now`
    double now;           ///< s
    double speed;         ///< px/s; 0 puts every sample at `width`
    double top;           ///< value of row 0
    double unitsPerPixel; ///< never 0; negative for an inverted range

    /// The row of a value, by truncation toward zero. NaN gives the row of INT_MIN.
    int row(double value) const { return truncated((top - value) / unitsPerPixel); }
    /// Column and row of a sample. Its value is to be no NaN.
    QPoint position(const TimeValue& sample) const
    {
        const qint64 column = qint64{width} - truncated((now - sample.first) * speed);
        constexpr qint64 lowest = std::numeric_limits<int>::min();
        constexpr qint64 highest = std::numeric_limits<int>::max();
        return {static_cast<int>(std::clamp(column, lowest, highest)), row(sample.second)};
    }
};

/// A clock reading as a time stamp, in single precision: from 512 s on in steps of 0.06 ms, and
/// in twice as large ones from each doubling of that on.
double secondsOf(qint64 milliseconds);

/// How far back a plot reaches, s. Speed 0 gives infinity, and NaN if `width` is 0, too: no
/// sample is ever older than either.
double visibleSpan(int width, double speed);

/// Value units per pixel of a plot with `rows` rows; 1 where the range divided by the rows is 0.
/// 0 rows give an infinity, on which every value falls on row 0.
double unitsPerPixel(const ValueRange& range, int rows);

/// Removes, from the newest to the oldest, each sample that is earlier than `cutOff` and each
/// that is later than the sample kept behind it. Linear in the samples. A `cutOff` of NaN or
/// -infinity removes none by age.
void pruneSamples(QList<TimeValue>& samples, double cutOff);

/// Takes whole `seconds` off the time of each sample. Exact: a time of `secondsOf` leaves 29 bits
/// of double precision free, which last for a year even of a graph's first samples.
void setSamplesBack(QList<TimeValue>& samples, double seconds);

/// Widens `range` so that it holds every sample. Samples that are not finite are passed over:
/// one of them would make the range useless for all curves.
void includeSamples(ValueRange& range, const QList<TimeValue>& samples);
