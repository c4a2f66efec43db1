// SPDX-License-Identifier: MIT
#pragma once

#include "leg_blends.h"
#include "raster_area.h"

#include <cstddef>
#include <optional>
#include <vector>

/// Blends the many upright legs that a dense line has in one column: each pixel once, whatever
/// the number of legs upon it, and to the value that the painter gives it leg by leg.
class ColumnBlender
{
public:
    /// None for painters whose legs are not known pixel by pixel.
    static std::optional<ColumnBlender> forPainter(const QPainter& painter);

    /// Blends the legs from point to point, at least two that share their column: of their rows,
    /// `end` is one past the last.
    void blend(int column, const int* first, const int* end);

private:
    ColumnBlender(const RasterArea& area, LegBlends blends);

    std::size_t xVisibleRow(int row) const;
    void xBlendRows(int column, std::size_t begin, std::size_t end);

    RasterArea fArea;
    LegBlends fBlends;
    std::vector<int> fPasses; ///< by the visible row: how many more legs it has than the one above
};
