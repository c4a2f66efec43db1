// SPDX-License-Identifier: MIT
#pragma once

class QWidget;

/// Parts of a panel that draw themselves may do so in colours of their own, on what is behind them.
/// Where the desktop's colours are dark, black would not be seen: such parts get light paper there,
/// and lose it again where the colours are light. To be called whenever these change.
void givePaper(const QWidget& panel);
