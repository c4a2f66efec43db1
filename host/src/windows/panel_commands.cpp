// SPDX-License-Identifier: MIT
#include "windows/panel_commands.h"

#include "windows/find_bar.h"
#include "windows/menu_command.h"
#include "windows/panel_dock.h"
#include "windows/panel_docks.h"
#include "windows/picture.h"
#include "windows/saved_file.h"
#include "windows/table_text.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDateTime>
#include <QMainWindow>
#include <QMenu>
#include <QStandardPaths>

#include <utility>

namespace {

/// Files of one panel differ by their time.
QString suggestedName(const PanelDock& dock)
{
    return dock.windowTitle() + QDateTime::currentDateTime().toString(" yyyy-MM-dd HH.mm.ss");
}

} // namespace

PanelCommands::PanelCommands(PanelDocks& docks, QMainWindow* window)
    : QObject(window), fDocks(docks), fWindow(window), fFindBar(new FindBar(window))
{
    window->addToolBar(Qt::BottomToolBarArea, fFindBar);
    connect(&docks, &PanelDocks::changed, this, &PanelCommands::xUpdate);
}

void PanelCommands::addSaving(QMenu& menu)
{
    add(menu, tr("&Save picture..."), tr("Ctrl+S"), &PanelCommands::savePicture);
    add(menu, tr("Save &table as CSV..."), tr("Ctrl+Shift+S"), &PanelCommands::saveTable);
}

void PanelCommands::addEditing(QMenu& menu)
{
    add(menu, tr("&Copy cell"), QKeySequence::Copy, &PanelCommands::copyCell);
    add(menu, tr("Copy &row"), tr("Ctrl+Shift+C"), &PanelCommands::copyRow);
    add(menu, tr("Copy &all"), {}, &PanelCommands::copyTable);
    add(menu, tr("Copy &picture"), {}, &PanelCommands::copyPicture);
    menu.addSeparator();
    add(menu, tr("&Find..."), QKeySequence::Find, &PanelCommands::find);
    add(menu, tr("Find &next"), tr("F3"), &PanelCommands::findNext);
    add(menu, tr("Find pre&vious"), tr("Shift+F3"), &PanelCommands::findPrevious);
}

void PanelCommands::addPlacing(QMenu& menu)
{
    add(menu, tr("&Next panel"), tr("Ctrl+Tab"), &PanelCommands::nextPanel);
    add(menu, tr("&Previous panel"), tr("Ctrl+Shift+Tab"), &PanelCommands::previousPanel);
    add(menu, tr("&Detach or attach"), tr("Ctrl+D"), &PanelCommands::detachPanel);
    add(menu, tr("&Rename..."), {}, &PanelCommands::renamePanel);
}

void PanelCommands::add(QMenu& menu, const QString& text, const QKeySequence& keys, Command command)
{
    fActions += addCommand(menu, text, keys, this, command);
}

void PanelCommands::xUpdate()
{
    const PanelDock* const front = fDocks.front();
    for (QAction* action : std::as_const(fActions))
        action->setEnabled(front != nullptr);
    fFindBar->follow(front ? front->panel() : nullptr);
}

/// There is one: the commands are disabled otherwise.
PanelDock& PanelCommands::dock() const
{
    return *fDocks.front();
}

QAbstractItemView* PanelCommands::table()
{
    QAbstractItemView* view = tableIn(*dock().panel());
    if (!view)
        emit noted(tr("There is no table in this panel."));
    return view;
}

void PanelCommands::report(const QString& problem, const QString& file)
{
    if (problem.isEmpty())
        emit noted(tr("Saved %1").arg(file));
    else
        emit failed(problem);
}

void PanelCommands::savePicture()
{
    // Taken before the dialog opens: it shows what the user saw when they chose it.
    const Picture picture = pictureOf(*dock().panel());
    const QString file = askWhereToSave(
        fWindow, {tr("Save picture"),
                  suggestedName(dock()),
                  {tr("Picture (*.png)"), tr("Document, sharp at any size (*.pdf)")},
                  "pictures",
                  QStandardPaths::writableLocation(QStandardPaths::PicturesLocation)});
    if (!file.isEmpty())
        report(::savePicture(picture, file), file);
}

void PanelCommands::saveTable()
{
    const QAbstractItemView* view = table();
    if (!view)
        return;
    const QByteArray bytes = csv(allTexts(*view));
    const QString file = askWhereToSave(
        fWindow, {tr("Save table"),
                  suggestedName(dock()),
                  {tr("Comma-separated values (*.csv)")},
                  "tables",
                  QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)});
    if (!file.isEmpty())
        report(saveFile(file, bytes), file);
}

void PanelCommands::copyText(const QString& text)
{
    QApplication::clipboard()->setText(text);
    emit noted(tr("Copied"));
}

void PanelCommands::copyCell()
{
    const QAbstractItemView* view = table();
    if (view && view->currentIndex().isValid())
        copyText(tabbed({{textOf(view->currentIndex())}}));
}

void PanelCommands::copyRow()
{
    const QAbstractItemView* view = table();
    if (view && view->currentIndex().isValid())
        copyText(tabbed({rowTexts(*view, view->currentIndex())}));
}

void PanelCommands::copyTable()
{
    if (const QAbstractItemView* view = table())
        copyText(tabbed(allTexts(*view)));
}

void PanelCommands::copyPicture()
{
    QApplication::clipboard()->setPixmap(dock().panel()->grab());
    emit noted(tr("Copied"));
}

void PanelCommands::find()
{
    fFindBar->open(*dock().panel());
}

void PanelCommands::endFinding()
{
    fFindBar->xClose();
}

void PanelCommands::findNext()
{
    fFindBar->step(*dock().panel(), true);
}

void PanelCommands::findPrevious()
{
    fFindBar->step(*dock().panel(), false);
}

void PanelCommands::nextPanel()
{
    fDocks.step(1);
}

void PanelCommands::previousPanel()
{
    fDocks.step(-1);
}

void PanelCommands::detachPanel()
{
    dock().setFloating(!dock().isFloating());
}

void PanelCommands::renamePanel()
{
    dock().editTitle();
}
