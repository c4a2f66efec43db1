// SPDX-License-Identifier: MIT
#include "stmlist_dialog.h"

#include "latin1.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStringMatcher>
#include <QVBoxLayout>

namespace {

const int filterWidth = 150; // px
const int filterSpacing = 3; // px

QListWidgetItem* newEntry(const QString& name)
{
    auto* item = new QListWidgetItem(name);
    item->setFlags(Qt::ItemIsUserCheckable | Qt::ItemIsEnabled | Qt::ItemIsEditable);
    item->setCheckState(Qt::Unchecked);
    return item;
}

// The key Tab goes from top left to bottom right, not in the order of making.
void setTabOrders(const QList<QWidget*>& widgets)
{
    for (int i = 1; i < widgets.size(); ++i)
        QWidget::setTabOrder(widgets[i - 1], widgets[i]);
}

} // namespace

const QString StmListDialog::fDevicesStart = "Device/";

StmListDialog::StmListDialog(const std::vector<std::string>& names, QWidget* parent)
    : QDialog(parent), fList(new QListWidget(this)), fDevicesBox(nullptr), fFilterEdit(nullptr)
{
    auto* layout = new QVBoxLayout(this);
    QHBoxLayout* buttonRow = xNewButtonRow();
    layout->addWidget(fList);
    // With hidden entries, the toolkit's scrolling by entries leaves the current one out of sight.
    fList->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    QHBoxLayout* filterRow = xNewFilterRow();
    xAddEntries(names);
    fList->sortItems(Qt::AscendingOrder);
    xOnFilterChanged();
    layout->addLayout(filterRow);
    layout->addLayout(buttonRow);
    setTabOrders({fList, fFilterEdit, fDevicesBox, buttonRow->itemAt(1)->widget(),
                  buttonRow->itemAt(2)->widget()});
}

QHBoxLayout* StmListDialog::xNewButtonRow()
{
    auto* row = new QHBoxLayout;
    auto* ok = new QPushButton(tr("Ok"), this);
    auto* cancel = new QPushButton(tr("Cancel"), this);
    connect(ok, SIGNAL(clicked()), this, SLOT(onOk()));
    connect(cancel, SIGNAL(clicked()), this, SLOT(reject()));
    ok->setDefault(true); // else the first one that Tab reaches would be it
    row->addStretch();
    row->addWidget(cancel);
    row->addWidget(ok);
    return row;
}

QHBoxLayout* StmListDialog::xNewFilterRow()
{
    auto* row = new QHBoxLayout;
    fDevicesBox = new QCheckBox(tr("View devices"), this);
    connect(fDevicesBox, SIGNAL(stateChanged(int)), this, SLOT(xOnFilterChanged()));
    auto* label = new QLabel(tr("Filter: "), this);
    fFilterEdit = new QLineEdit(this);
    fFilterEdit->setMaximumWidth(filterWidth);
    connect(fFilterEdit, SIGNAL(textChanged(const QString&)), this, SLOT(xOnFilterChanged()));
    row->addWidget(label, 0, Qt::AlignLeft);
    row->addWidget(fFilterEdit, 0, Qt::AlignLeft);
    row->addSpacing(filterSpacing);
    row->addWidget(fDevicesBox, 1);
    return row;
}

void StmListDialog::xAddEntries(const std::vector<std::string>& names)
{
    fItems.reserve(static_cast<int>(names.size()));
    for (const std::string& each : names) {
        const QString name = fromLatin1(each);
        fItems.append({newEntry(name), name});
        fList->addItem(fItems.last().first);
    }
}

// By rows and not by entries: the list would search for the row of an entry.
void StmListDialog::xOnFilterChanged()
{
    const QString filter = fFilterEdit->text();
    const QStringMatcher matcher(filter, Qt::CaseInsensitive);
    const bool viewsDevices = fDevicesBox->isChecked();
    for (int row = 0; row < fList->count(); ++row) {
        const QString text = fList->item(row)->text();
        const bool passes = filter.isEmpty() || matcher.indexIn(text) >= 0;
        const bool isHidden = !passes || (!viewsDevices && text.startsWith(fDevicesStart));
        if (isHidden != fList->isRowHidden(row))
            fList->setRowHidden(row, isHidden);
    }
    if (!xIsSorted())
        fList->sortItems(Qt::AscendingOrder);
}

// Sorting what is sorted would cost a comparison of log(n) times as many entries and make the
// view forget all that it knows about its rows.
bool StmListDialog::xIsSorted() const
{
    for (int row = 1; row < fList->count(); ++row) {
        if (*fList->item(row) < *fList->item(row - 1))
            return false;
    }
    return true;
}

void StmListDialog::onOk()
{
    fChosen.clear();
    for (const auto& each : fItems) {
        if (each.first->checkState() == Qt::Checked)
            fChosen.append({each.second, each.first->text()});
    }
    accept();
}

void StmListDialog::xMakeAliasWidget(const QString& name, QGridLayout& layout, int row,
                                     QList<QPair<QString, QLineEdit*>>& list)
{
    auto* label = new QLabel(name + ":", this);
    auto* edit = new QLineEdit(name, this);
    layout.addWidget(label, row, 0);
    layout.addWidget(edit, row, 1);
    list.append({name, edit});
}
