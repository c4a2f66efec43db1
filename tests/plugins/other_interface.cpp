// SPDX-License-Identifier: MIT
// Made for another version of the host.

#include <QObject>
#include <QtPlugin>

class OtherInterface : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.tarvek.desktop.WidgetInterface/9.9")
};

#include "other_interface.moc"
