// SPDX-License-Identifier: MIT
#include <tarvek/tarvek_widget.h>

#include <tarvek/widget_interface.h>

TarvekWidget::TarvekWidget(QWidget* parent) : QWidget(parent)
{
    // Queued connections and signal spies know the signal's argument by its registered name only.
    qRegisterMetaType<WidgetInterface*>();
}

TarvekWidget::~TarvekWidget() = default;
