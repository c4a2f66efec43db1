// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

struct Color;

/// The colour to paint with, opaque. Channels beyond 0 to 255 are shown as the nearest of these;
/// the record keeps what it holds.
QColor shownColor(const Color& color);
