// SPDX-License-Identifier: MIT
#include "windows/panel_menu.h"

#include "plugins/plugin_loader.h"
#include "windows/panel_commands.h"

#include <QAction>
#include <QMainWindow>
#include <QMenuBar>

PanelMenu::PanelMenu(const PluginLoader& plugins, PanelCommands& commands, QMainWindow* window)
    : QObject(window)
{
    QMenu* menu = window->menuBar()->addMenu(tr("&Panels"));
    menu->setToolTipsVisible(true);
    for (const auto& plugin : plugins.plugins()) {
        QAction* action = menu->addAction(plugin->label);
        action->setToolTip(plugin->file);
        connect(action, &QAction::triggered, this,
                [this, panels = plugin.get()] { emit chosen(panels); });
        fActions[plugin.get()] = action;
    }
    if (fActions.isEmpty())
        menu->addAction(tr("(none found)"))->setEnabled(false);
    menu->addSeparator();
    commands.addPlacing(*menu);
}

void PanelMenu::setPossible(const PanelPlugin& plugin, bool isPossible)
{
    fActions.value(&plugin)->setEnabled(isPossible);
}
