// SPDX-License-Identifier: MIT
#pragma once

#include <tarvek/widget_interface.h>

#include <QObject>

/// The plug-in as the host sees it: makes the panel.
class Interface : public QObject, public WidgetInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.tarvek.desktop.WidgetInterface/0.1" FILE "glimmet.json")
    Q_INTERFACES(WidgetInterface)

public:
    /// Connects to the robot, retitles `parent`, and asks in a dialog which keys to follow. Null
    /// when the user cancels it, or `parent` or the panel is deleted meanwhile; the broker stays in
    /// `fBroker` even then. Throws ZoError, before any widget is made, when the robot cannot be
    /// reached.
    TarvekWidget* getWidget(QWidget* parent, const std::string& ip, int port,
                            const std::string& imageDir) override;
};
