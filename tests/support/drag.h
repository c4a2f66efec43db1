// SPDX-License-Identifier: MIT
#pragma once

#include <QMouseEvent>
#include <QSplitter>
#include <QtTest>

/// Moves the mouse by 30 pixels to the right with its button held down.
inline void drag(QWidget& part, const QPoint& from)
{
    const QPoint to = from + QPoint(30, 0);
    QTest::mouseMove(&part, from);
    QTest::mousePress(&part, Qt::LeftButton, {}, from);
    QMouseEvent move(QEvent::MouseMove, to, part.mapToGlobal(to), Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&part, &move);
    QTest::mouseRelease(&part, Qt::LeftButton, {}, to);
}

/// The border between the first two panes.
inline void dragHandle(const QSplitter& splitter)
{
    drag(*splitter.handle(1), splitter.handle(1)->rect().center());
}
