// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class PluginLoader;
struct PanelPlugin;

/// What a window shows as long as it has no panel: one button for each panel to choose.
class StartPage : public QWidget
{
    Q_OBJECT

public:
    StartPage(const PluginLoader& plugins, QWidget* parent);

signals:
    void chosen(PanelPlugin* plugin);
};
