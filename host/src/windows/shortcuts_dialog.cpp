// SPDX-License-Identifier: MIT
#include "windows/shortcuts_dialog.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

/// Without the mark of its key, which has a place of its own behind texts in letters without keys.
QString plain(QString text)
{
    text.remove(QRegularExpression(R"(\(&\w\))")).remove('&');
    if (text.endsWith("..."))
        text.chop(3);
    return text;
}

void addRows(QTreeWidget& list, const QMenu& menu)
{
    for (const QAction* action : menu.actions()) {
        const QString keys =
            QKeySequence::listToString(action->shortcuts(), QKeySequence::NativeText);
        if (!keys.isEmpty())
            new QTreeWidgetItem(&list, {keys, plain(action->text()), plain(menu.title())});
    }
}

} // namespace

ShortcutsDialog::ShortcutsDialog(const QMenuBar& menus, QWidget* parent) : QDialog(parent)
{
    setWindowTitle(tr("Shortcuts"));
    auto* layout = new QVBoxLayout(this);
    auto* list = new QTreeWidget(this);
    list->setHeaderLabels({tr("Keys"), tr("What they do"), tr("Menu")});
    list->setRootIsDecorated(false);
    for (const QAction* action : menus.actions())
        if (action->menu())
            addRows(*list, *action->menu());
    new QTreeWidgetItem(list, {tr("Return"), tr("Next match, in the bar to find with"), {}});
    new QTreeWidgetItem(list, {tr("Shift+Return"), tr("Previous match, there"), {}});
    new QTreeWidgetItem(list,
                        {tr("Escape"), tr("Close the bar, or give a title its old text"), {}});
    for (int column = 0; column < list->columnCount(); ++column)
        list->resizeColumnToContents(column);
    layout->addWidget(list);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    resize(560, 460);
}
