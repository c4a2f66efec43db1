// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

class QMessageBox;
class QWidget;

/// A question over `window`, not shown yet, whether recordings may end; "Cancel" is its default.
/// `agreed` is called when the user presses `agreement`. Deletes itself when it is answered.
QMessageBox* makeEndingQuestion(QWidget* window, const QString& text, const QString& agreement,
                                const std::function<void()>& agreed);
