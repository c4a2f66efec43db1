// SPDX-License-Identifier: MIT
#include "dialogs/window_order.h"

#include <QApplication>
#include <QWidget>
#include <QWindow>

bool mayPlaceWindows()
{
    return !QGuiApplication::platformName().startsWith("wayland");
}

void bringToFront(QWidget& window, bool mayPlace)
{
    const bool isBehind = window.isVisible() && !window.isActiveWindow();
    // A dialog above it would be closed with it.
    if (!mayPlace && isBehind && !QApplication::activeModalWidget())
        window.hide();
    window.show();
    if (!mayPlace) {
        QApplication::alert(&window);
        return;
    }
    window.raise();
    window.activateWindow();
}

void standOver(QWidget& dialog, const QWidget* window)
{
    dialog.winId(); // makes what the display system knows of it
    dialog.windowHandle()->setTransientParent(window ? window->windowHandle() : nullptr);
}
