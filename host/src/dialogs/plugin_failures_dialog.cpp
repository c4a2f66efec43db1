// SPDX-License-Identifier: MIT
#include "dialogs/plugin_failures_dialog.h"

#include "plugins/plugin_loader.h"

#include <QDialogButtonBox>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {

QTableWidgetItem* makeCell(const QString& text, const QString& toolTip)
{
    auto* cell = new QTableWidgetItem(text);
    cell->setToolTip(toolTip.toHtmlEscaped());
    return cell;
}

} // namespace

PluginFailuresDialog::PluginFailuresDialog(const PluginLoader& plugins, QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(tr("Plug-ins that failed"));
    resize(800, 400);
    auto* layout = new QVBoxLayout(this);
    auto* folders = new QLabel(tr("Looked in: %1").arg(plugins.folders().join(", ")), this);
    folders->setTextFormat(Qt::PlainText);
    folders->setWordWrap(true);
    layout->addWidget(folders);
    layout->addWidget(makeTable(plugins));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

QWidget* PluginFailuresDialog::makeTable(const PluginLoader& plugins)
{
    if (plugins.failures().empty())
        return new QLabel(tr("Every plug-in was loaded."), this);
    auto* table = new QTableWidget(static_cast<int>(plugins.failures().size()), 2, this);
    table->setHorizontalHeaderLabels({tr("File"), tr("Reason")});
    table->setSelectionMode(QAbstractItemView::NoSelection);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setTextElideMode(Qt::ElideMiddle);
    for (int row = 0; row < table->rowCount(); ++row) {
        const PluginFailure& failure = plugins.failures()[static_cast<size_t>(row)];
        const QFileInfo file(failure.file);
        table->setItem(row, 0, makeCell(file.fileName() + '\n' + file.path(), failure.file));
        table->setItem(row, 1, makeCell(failure.reason, failure.reason));
    }
    table->setColumnWidth(0, width() / 3);
    table->horizontalHeader()->setStretchLastSection(true);
    table->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table->verticalHeader()->hide();
    return table;
}
