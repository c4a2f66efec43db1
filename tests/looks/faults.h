// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QStringList>
#include <QWidget>

/// What a user would find wrong with how a window looks, one line for each fault; `image` is the
/// window's, in pixels of the screen. What a view scrolls, other windows, and `besides` with all in
/// them are not looked at. Faults are
/// - parts that stick out of what they stand in, or lie on each other; a window larger than the
/// screen
/// - texts of labels, buttons, boxes, tabs, menus and column heads that have not enough room
/// - texts of what can be used whose contrast is below `leastContrast`.
QStringList faultsOf(const QWidget& window, const QImage& image,
                     const QList<QWidget*>& besides = {});

/// From 1, the same colour, to 21, black and white.
double contrastOf(const QColor& one, const QColor& other);

/// The least that everybody can read in small letters.
constexpr double leastContrast = 4.5;
