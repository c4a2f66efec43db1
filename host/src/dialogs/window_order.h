// SPDX-License-Identifier: MIT
#pragma once

class QWidget;

/// Whether programs choose where their windows are and which is in front. Under Wayland the user
/// does.
bool mayPlaceWindows();

/// Shows a window in front of the others. Where that is not the program's to choose, an open window
/// is opened anew, as new ones come up in front, and asks for attention.
void bringToFront(QWidget& window, bool mayPlace = mayPlaceWindows());

/// Keeps `dialog`, which has no parent, in front of `window`; null: of none.
void standOver(QWidget& dialog, const QWidget* window);
