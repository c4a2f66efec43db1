// SPDX-License-Identifier: MIT
// Throws as soon as its object is made.

#include <QObject>
#include <QtPlugin>

#include <stdexcept>

class ThrowsAtStart : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.tarvek.desktop.WidgetInterface/0.1")

public:
    ThrowsAtStart() { throw std::runtime_error("no licence for a good start"); }
};

#include "throws_at_start.moc"
