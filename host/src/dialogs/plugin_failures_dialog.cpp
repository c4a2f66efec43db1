// SPDX-License-Identifier: MIT
#include "dialogs/plugin_failures_dialog.h"

#include "connection/plain_tool_tip.h"
#include "plugins/plugin_loader.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {

QTableWidgetItem* makeCell(const QString& text, const QString& toolTip)
{
    auto* cell = new QTableWidgetItem(text);
    cell->setToolTip(plainToolTip(toolTip));
    return cell;
}

/// One line for each.
QString failuresText(const PluginLoader& plugins)
{
    QString text;
    for (const PluginFailure& failure : plugins.failures())
        text += failure.file + ": " + failure.reason.simplified() + '\n';
    return text;
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
    folders->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(folders);
    layout->addWidget(makeTable(plugins));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    if (!plugins.failures().empty()) {
        const auto* copy = buttons->addButton(tr("&Copy"), QDialogButtonBox::ActionRole);
        connect(copy, &QAbstractButton::clicked, this,
                [text = failuresText(plugins)] { QApplication::clipboard()->setText(text); });
    }
    layout->addWidget(buttons);
}

QWidget* PluginFailuresDialog::makeTable(const PluginLoader& plugins)
{
    if (plugins.failures().empty())
        return new QLabel(tr("Every plug-in was loaded."), this);
    auto* table = new QTableWidget(static_cast<int>(plugins.failures().size()), 2, this);
    table->setHorizontalHeaderLabels({tr("File"), tr("Reason")});
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
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
