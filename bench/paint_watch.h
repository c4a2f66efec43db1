// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

/// Tells when a widget was painted.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(QWidget* widget) { widget->installEventFilter(this); }

    /// Until the widget was painted and nothing is left to do.
    void settle()
    {
        for (fIsPainted = false; !fIsPainted;)
            QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }

private:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        fIsPainted = fIsPainted || event->type() == QEvent::Paint;
        return QObject::eventFilter(watched, event);
    }

    bool fIsPainted = false;
};
