// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

class QMenuBar;

/// The list of all commands in the menus that have a shortcut.
class ShortcutsDialog : public QDialog
{
    Q_OBJECT

public:
    ShortcutsDialog(const QMenuBar& menus, QWidget* parent);
};
