// SPDX-License-Identifier: MIT
#include "color_button.h"

#include "modal_dialog.h"
#include "model.h"
#include "shown_color.h"

#include <QApplication>
#include <QColorDialog>
#include <QPainter>

ColorButton::ColorButton(Color& color, QWidget* parent) : QPushButton(parent), fColor(color)
{
    xShowColor();
    setFixedSize(fSize, fSize);
    connect(this, SIGNAL(clicked()), this, SLOT(xOnClick()));
}

void ColorButton::xOnClick()
{
    // Two clicks may come in one go, and a click may come late, when another dialog has opened.
    const QWidget* modal = QApplication::activeModalWidget();
    if (modal && modal != window())
        return;
    ModalDialog<QColorDialog> dialog(shownColor(fColor), this);
    if (!dialog.exec())
        return;
    const QColor chosen = dialog->selectedColor();
    fColor.red = chosen.red();
    fColor.green = chosen.green();
    fColor.blue = chosen.blue();
    xShowColor();
}

/// The square covers what the style draws around a button that has the focus.
void ColorButton::paintEvent(QPaintEvent* event)
{
    QPushButton::paintEvent(event);
    if (!hasFocus())
        return;
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    painter.setPen(palette().color(QPalette::Window));
    painter.drawRect(rect().adjusted(1, 1, -2, -2));
}

void ColorButton::xShowColor()
{
    QPixmap square(fSize, fSize);
    square.fill(shownColor(fColor));
    setIcon(square);
}
