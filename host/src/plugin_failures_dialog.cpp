#include "plugin_failures_dialog.h"

#include "plugin_loader.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QTreeWidget>
#include <QVBoxLayout>

PluginFailuresDialog::PluginFailuresDialog(const PluginLoader& plugins, QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(tr("Plug-ins that failed"));
    resize(700, 300);
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
    auto* table = new QTreeWidget(this);
    table->setHeaderLabels({tr("File"), tr("Reason")});
    table->setRootIsDecorated(false);
    table->setWordWrap(true);
    table->setSelectionMode(QAbstractItemView::NoSelection);
    for (const PluginFailure& failure : plugins.failures()) {
        auto* item = new QTreeWidgetItem(table, {failure.file, failure.reason});
        item->setToolTip(0, failure.file.toHtmlEscaped());
        item->setToolTip(1, failure.reason.toHtmlEscaped());
    }
    table->header()->resizeSection(0, width() / 2);
    return table;
}
