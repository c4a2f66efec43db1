// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

class QObject;
class QWidget;

/// Moves a window that no screen shows enough of to be grasped, since its screen has gone, to the
/// first one, and makes it no larger than that.
void bringIntoSight(QWidget& window);

/// Calls `act`, for as long as `context` lives, when a screen has gone or has another size: later,
/// as the display system may move windows itself.
void whenScreensChange(QObject* context, const std::function<void()>& act);
