// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <array>
#include <vector>

class QPainter;

/// What upright legs of a painter's lines, 1 px wide and one upon the other, make of the two
/// pixels that they cover in each row. The numbers are read from legs that the toolkit itself
/// draws for it, so that they hold for whatever it does.
class LegBlends
{
public:
    /// Of the pixels on the left and on the right of a leg.
    enum Side
    {
        Left,
        Right
    };

    /// For the pen and the render hints of `painter`, on images of the 32-bit `format`.
    LegBlends(const QPainter& painter, QImage::Format format);

    /// False where the toolkit blends in a way that numbers for single bytes do not foretell.
    bool areKnown() const { return !fPasses.empty(); }

    /// `pixel` after `passes` legs. The blends are to be known.
    quint32 blended(quint32 pixel, Side side, int passes) const
    {
        const int known = static_cast<int>(fPasses.size());
        for (; passes > known && !fSettles; passes -= known)
            pixel = xBlended(pixel, side, known);
        return xBlended(pixel, side, passes < known ? passes : known);
    }

private:
    using Byte = std::array<quint8, 256>; ///< by its value before
    using Pixel = std::array<Byte, 4>;
    using Sides = std::array<Pixel, 2>;

    quint32 xBlended(quint32 pixel, Side side, int passes) const
    {
        const Pixel& after = fPasses[static_cast<std::size_t>(passes - 1)][side];
        return after[0][pixel & 0xff] | quint32{after[1][pixel >> 8 & 0xff]} << 8 |
               quint32{after[2][pixel >> 16 & 0xff]} << 16 | quint32{after[3][pixel >> 24]} << 24;
    }
    void xReadFirst(const QImage& after);
    bool xForetells(const QImage& before, const QImage& after) const;
    void xAddPasses();

    std::vector<Sides> fPasses; ///< by the number of legs, less 1
    bool fSettles = false;      ///< further legs change no pixel any more
};
