// SPDX-License-Identifier: MIT
#include "windows/help_menu.h"

#include "dialogs/plugin_failures_dialog.h"
#include "plugins/plugin_loader.h"
#include "plugins/resource_paths.h"
#include "windows/guide_window.h"
#include "windows/menu_command.h"
#include "windows/shortcuts_dialog.h"

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QMainWindow>
#include <QMenuBar>
#include <QMessageBox>

#include <utility>

namespace {

void open(QDialog* dialog)
{
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

} // namespace

HelpMenu::HelpMenu(const PluginLoader& plugins, std::function<QString()> diagnostics,
                   QMainWindow* window)
    : QObject(window), fPlugins(plugins), fDiagnostics(std::move(diagnostics)), fWindow(window)
{
    QMenu* menu = window->menuBar()->addMenu(tr("&Help"));
    addCommand(*menu, tr("&Guide"), tr("F1"), this, &HelpMenu::xShowGuide);
    menu->addAction(tr("&Shortcuts..."), this, &HelpMenu::xShowShortcuts);
    menu->addSeparator();
    menu->addAction(tr("&Plug-ins that failed (%1)...").arg(plugins.failures().size()), this,
                    &HelpMenu::xShowFailures);
    menu->addAction(tr("&Copy diagnostics"), this, &HelpMenu::xCopyDiagnostics);
    menu->addSeparator();
    menu->addAction(tr("&About"), this, &HelpMenu::xShowAbout);
}

void HelpMenu::xShowGuide()
{
    const QString problem = showGuide(ownGuideFile(), fWindow);
    if (!problem.isEmpty())
        emit failed(problem);
}

void HelpMenu::xShowShortcuts()
{
    open(new ShortcutsDialog(*fWindow->menuBar(), fWindow));
}

void HelpMenu::xShowFailures()
{
    open(new PluginFailuresDialog(fPlugins, fWindow));
}

void HelpMenu::xCopyDiagnostics()
{
    QApplication::clipboard()->setText(fDiagnostics());
    emit noted(tr("Copied: paste it into your report"));
}

void HelpMenu::xShowAbout()
{
    open(new QMessageBox(
        QMessageBox::Information, tr("About"),
        tr("%1 %2\n\nShows tool panels for robots on the network.")
            .arg(QApplication::applicationName(), QApplication::applicationVersion()),
        QMessageBox::Ok, fWindow));
}
