// SPDX-License-Identifier: MIT
#include "windows/in_sight.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace {

/// Of the edge by which windows are dragged.
constexpr int graspable = 50; ///< px

bool canBeGrasped(const QRect& frame)
{
    const QList<QScreen*> screens = QGuiApplication::screens();
    return std::any_of(screens.begin(), screens.end(), [&frame](const QScreen* screen) {
        const QRect seen = frame & screen->availableGeometry();
        return seen.top() == frame.top() && seen.width() >= std::min(graspable, frame.width()) &&
               seen.height() >= std::min(graspable, frame.height());
    });
}

} // namespace

void bringIntoSight(QWidget& window)
{
    const QScreen* const first = QGuiApplication::primaryScreen();
    if (!first || canBeGrasped(window.frameGeometry()))
        return;
    const QRect room = first->availableGeometry();
    const QSize edges = window.frameGeometry().size() - window.size();
    window.resize(window.size().boundedTo(room.size() - edges));
    const QSize rest = room.size() - edges - window.size();
    window.move(room.topLeft() + QPoint(rest.width(), rest.height()) / 2);
}

void whenScreensChange(QObject* context, const std::function<void()>& act)
{
    const auto watch = [context, act](const QScreen* screen) {
        QObject::connect(screen, &QScreen::availableGeometryChanged, context, act,
                         Qt::QueuedConnection);
    };
    for (const QScreen* screen : QGuiApplication::screens())
        watch(screen);
    QObject::connect(qApp, &QGuiApplication::screenAdded, context, watch);
    QObject::connect(qApp, &QGuiApplication::screenRemoved, context, act, Qt::QueuedConnection);
}
