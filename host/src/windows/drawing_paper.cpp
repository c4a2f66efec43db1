// SPDX-License-Identifier: MIT
#include "windows/drawing_paper.h"

#include <QLayout>
#include <QPalette>
#include <QVariant>
#include <QWidget>

namespace {

constexpr char hasPaper[] = "hasPaper";
constexpr int darkBelow = 128; ///< of 255

/// A class of the panel's own right above the toolkit's plain widget, with nothing in it.
bool drawsItself(const QWidget& part)
{
    const QMetaObject& kind = *part.metaObject();
    return kind.superClass() == &QWidget::staticMetaObject && kind.className()[0] != 'Q' &&
           !part.layout() && !part.findChild<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
}

void give(QWidget& part, bool isWanted)
{
    if (part.property(hasPaper).toBool() == isWanted)
        return;
    QPalette colors;
    if (isWanted) {
        colors.setColor(QPalette::Window, Qt::white);
        colors.setColor(QPalette::WindowText, Qt::black);
    }
    part.setProperty(hasPaper, isWanted);
    part.setPalette(colors);
    part.setAutoFillBackground(isWanted);
}

} // namespace

void givePaper(const QWidget& panel)
{
    const bool isDark = panel.palette().color(QPalette::Window).lightness() < darkBelow;
    for (auto* part : panel.findChildren<QWidget*>())
        if (drawsItself(*part))
            give(*part, isDark);
}
