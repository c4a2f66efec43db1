// SPDX-License-Identifier: MIT
#include "shown_color.h"

#include "model.h"

QColor shownColor(const Color& color)
{
    return {qBound(0, color.red, 255), qBound(0, color.green, 255), qBound(0, color.blue, 255)};
}
