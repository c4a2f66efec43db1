// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QWidget;

/// Shows the guide in `file`, Markdown with pictures beside it, in a window of its own; needs no
/// network and no other program. The window goes with `window`, over which it opens once. Returns
/// what went wrong, empty for nothing.
QString showGuide(const QString& file, QWidget* window);
