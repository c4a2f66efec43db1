// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QWidget>

class PluginLoader;
class QPushButton;
struct PanelPlugin;

/// What a window shows as long as it has no panel: one button for each panel to choose.
class StartPage : public QWidget
{
    Q_OBJECT

public:
    StartPage(const PluginLoader& plugins, QWidget* parent);

    /// Whether a panel of this plug-in can be made at present.
    void setPossible(const PanelPlugin& plugin, bool isPossible);

signals:
    void chosen(PanelPlugin* plugin);

private:
    QMap<const PanelPlugin*, QPushButton*> fButtons;
};
