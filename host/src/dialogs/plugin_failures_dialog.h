// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

class PluginLoader;

/// The plug-ins that could not be loaded: file and reason.
class PluginFailuresDialog : public QDialog
{
    Q_OBJECT

public:
    PluginFailuresDialog(const PluginLoader& plugins, QWidget* parent);

private:
    QWidget* makeTable(const PluginLoader& plugins);
};
