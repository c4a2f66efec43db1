// SPDX-License-Identifier: MIT
// Claims the interface, but its object does not have it.

#include <QObject>
#include <QtPlugin>

class DeafObject : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.tarvek.desktop.WidgetInterface/0.1")
};

#include "deaf_object.moc"
