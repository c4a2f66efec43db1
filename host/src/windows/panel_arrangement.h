// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QString>

class QWidget;

/// How a user has arranged the inside of a panel, of which nothing is known but the toolkit's parts
/// in it: where the borders of its splitters are, and the widths, the order and the sorting of the
/// columns of its tables. A text for each part, by the part's place in the panel.
using PanelArrangement = QMap<QString, QString>;

PanelArrangement arrangementOf(const QWidget& panel);

/// Of `arrangement` the order and the sorting of columns, where these are others than in `before`:
/// what is the user's when the sizes are not.
PanelArrangement withoutSizes(const PanelArrangement& arrangement, const PanelArrangement& before);
/// Whether it says how large anything is.
bool hasSizes(const PanelArrangement& arrangement);

/// Arranges a panel like the one that `arrangement` was taken from. What does not fit it, being of
/// another version or no arrangement at all, changes nothing.
void arrange(const QWidget& panel, const PanelArrangement& arrangement);
