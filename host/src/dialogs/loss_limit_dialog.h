// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>

class QWidget;

/// Asks, over `parent`, how long panels wait for a robot that is away, beginning with `present`;
/// `use` gets what is chosen.
void askLossLimit(QWidget* parent, std::chrono::seconds present,
                  const std::function<void(std::chrono::seconds)>& use);
