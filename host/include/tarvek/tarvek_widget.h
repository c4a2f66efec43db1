// SPDX-License-Identifier: MIT
#pragma once

#include <tarvek/export.h>

#include <QWidget>

class WidgetInterface;

/// Base class of the panels that plug-ins give to Tarvek Desktop.
class TARVEK_EXPORT TarvekWidget : public QWidget
{
    Q_OBJECT

public:
    explicit TarvekWidget(QWidget* parent = nullptr);
    ~TarvekWidget() override;

signals:
    /// Emitted by the host, on the GUI thread, when the connection to the panel's robot is lost:
    /// once per outage. A panel stops asking the robot for data then.
    void disconnected(WidgetInterface* plugin);
};
