// SPDX-License-Identifier: MIT
#include "leg_blends.h"

#include <QPainter>

namespace {

// The picture that is read: two legs, each with a column and a row to spare on every side. The
// first one runs over all values of a byte, the second one over colours of all kinds.
constexpr int values = 256;
constexpr int columns = 8;
constexpr int firstLeg = 2;
constexpr int secondLeg = 6;

QImage backgrounds(QImage::Format format)
{
    QImage image(columns, values + 2, format);
    for (int y = 0; y < image.height(); ++y) {
        const auto value = static_cast<quint32>(y - 1) & 0xff;
        auto* pixels = reinterpret_cast<quint32*>(image.scanLine(y));
        for (int x = 0; x < columns; ++x)
            pixels[x] = x < 4 ? value * 0x01010101 : 0xff000000 | value * 0x9d4f35;
    }
    return image;
}

QImage withLegs(QImage image, const QPainter& like)
{
    QPainter painter(&image);
    painter.setClipRect(image.rect());
    painter.setRenderHints(like.renderHints());
    QPen pen = like.pen();
    pen.setCapStyle(Qt::FlatCap);
    painter.setPen(pen);
    for (const int column : {firstLeg, secondLeg})
        painter.drawLine(column, 1, column, 1 + values);
    return image;
}

/// A row has no bytes to spare.
quint32 pixelAt(const QImage& image, int x, int y)
{
    return reinterpret_cast<const quint32*>(image.constBits())[y * columns + x];
}

} // namespace

LegBlends::LegBlends(const QPainter& painter, QImage::Format format)
{
    const QImage before = backgrounds(format);
    const QImage after = withLegs(before, painter);
    xReadFirst(after);
    if (xForetells(before, after))
        xAddPasses();
    else
        fPasses.clear();
}

/// Reads what one leg makes of each value.
void LegBlends::xReadFirst(const QImage& after)
{
    Sides first;
    for (const Side side : {Left, Right}) {
        for (std::size_t value = 0; value < values; ++value) {
            const quint32 pixel = pixelAt(after, firstLeg - 1 + side, static_cast<int>(value) + 1);
            for (std::size_t byte = 0; byte < 4; ++byte)
                first[side][byte][value] = static_cast<quint8>(pixel >> 8 * byte);
        }
    }
    fPasses.push_back(first);
}

/// Whether what has been read gives the whole picture.
bool LegBlends::xForetells(const QImage& before, const QImage& after) const
{
    for (int y = 0; y < before.height(); ++y) {
        for (int x = 0; x < columns; ++x) {
            quint32 pixel = pixelAt(before, x, y);
            const bool inRow = y >= 1 && y < 1 + values;
            if (inRow && (x == firstLeg - 1 || x == secondLeg - 1))
                pixel = blended(pixel, Left, 1);
            else if (inRow && (x == firstLeg || x == secondLeg))
                pixel = blended(pixel, Right, 1);
            if (pixel != pixelAt(after, x, y))
                return false;
        }
    }
    return true;
}

/// Works out further passes, until they change nothing or are enough for most lines.
void LegBlends::xAddPasses()
{
    constexpr std::size_t enough = 16;
    while (!fSettles && fPasses.size() < enough) {
        Sides next = fPasses.back();
        for (const Side side : {Left, Right}) {
            for (std::size_t byte = 0; byte < 4; ++byte) {
                for (quint8& value : next[side][byte])
                    value = fPasses.front()[side][byte][value];
            }
        }
        fSettles = next == fPasses.back();
        if (!fSettles)
            fPasses.push_back(next);
    }
}
