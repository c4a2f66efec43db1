// SPDX-License-Identifier: MIT
#pragma once

#include "windows/window_content.h"

/// What windows and panels looked like when they were closed last, in the user's settings. Anybody
/// may have edited these: what cannot be right is as if it were not there.

void saveLook(const WindowLook& look);
WindowLook savedLook();

/// Of the panels of one kind.
void saveArrangement(const QString& kind, const PanelArrangement& arrangement);
PanelArrangement savedArrangement(const QString& kind);
