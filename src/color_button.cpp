#include "color_button.h"

#include "model.h"
#include "shown_color.h"

#include <QColorDialog>
#include <QPointer>

ColorButton::ColorButton(Color& color, QWidget* parent) : QPushButton(parent), fColor(color)
{
    xShowColor();
    setFixedSize(fSize, fSize);
    connect(this, SIGNAL(clicked()), this, SLOT(xOnClick()));
}

void ColorButton::xOnClick()
{
    // The button may be deleted, and the dialog with it, while the dialog is open.
    auto* dialog = new QColorDialog(shownColor(fColor), this);
    const QPointer<QColorDialog> stillThere(dialog);
    dialog->exec();
    if (!stillThere)
        return;
    const QColor chosen = dialog->selectedColor();
    delete dialog;
    if (!chosen.isValid())
        return;
    fColor.red = chosen.red();
    fColor.green = chosen.green();
    fColor.blue = chosen.blue();
    xShowColor();
}

void ColorButton::xShowColor()
{
    QPixmap square(fSize, fSize);
    square.fill(shownColor(fColor));
    setIcon(square);
}
