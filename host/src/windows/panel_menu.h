// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QObject>

class PanelCommands;
class PluginLoader;
class QAction;
class QMainWindow;
struct PanelPlugin;

/// The menu "Panels" of a window.
class PanelMenu : public QObject
{
    Q_OBJECT

public:
    /// `commands` places the panel in front.
    PanelMenu(const PluginLoader& plugins, PanelCommands& commands, QMainWindow* window);

    /// Whether a panel of this plug-in can be made at present.
    void setPossible(const PanelPlugin& plugin, bool isPossible);

signals:
    void chosen(PanelPlugin* plugin);

private:
    QMap<const PanelPlugin*, QAction*> fActions;
};
