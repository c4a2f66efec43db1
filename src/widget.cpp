// SPDX-License-Identifier: MIT
#include "widget.h"

#include "config_files.h"
#include "config_manager.h"
#include "file_extension.h"
#include "graph.h"
#include "graph_config.h"
#include "kept_for_signal.h"
#include "key_tree.h"
#include "latin1.h"
#include "module.h"
#include "row_builder.h"
#include "row_flags.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QInputDialog>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSplitter>
#include <QTimer>

#include <stdexcept>
#include <utility>

int Widget::fRefreshInterval = 100;
const QString Widget::fRefreshImg = "buttons/refresh.png";
const QString Widget::fOpenImg = "buttons/open.png";
const QString Widget::fSaveImg = "buttons/save.png";
const QString Widget::fFileExtension = configFileExtension;

Widget::Widget(boost::shared_ptr<Module> module, const QString& imageDir, QWidget* parent)
    : TarvekWidget(parent),
      fModule(std::move(module)),
      fGraph(nullptr),
      fTree(nullptr),
      fSubscriptionBox(nullptr),
      fTreeTimer(new QTimer(this)),
      fDataTimer(new QTimer(this)),
      fTreeDirty(false)
{
    auto* splitter = new QSplitter(this);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(splitter);
    QGridLayout* treePane = xAddPane(splitter);
    QGridLayout* graphPane = xAddPane(splitter);
    xSetUpTable(treePane);
    xSetUpCommands(treePane, imageDir);
    xSetUpGraph(graphPane, imageDir);
    xSetUpFileButtons(treePane, imageDir);
    resize(800, 400);
    xSetUpTimers();
}

Widget::~Widget() = default;

QGridLayout* Widget::xAddPane(QWidget* splitter)
{
    // A splitter takes every child into its row.
    return new QGridLayout(new QWidget(splitter));
}

void Widget::xSetUpTable(QGridLayout* pane)
{
    auto* table = new KeyTree(this);
    // When the table is filled it has no values yet.
    table->leaveRoom(fColType, "invalid");
    table->leaveRoom(fColValue, "-0.12345678");
    fTree = table;
    fTree->setHeaderLabels({"Name", "Watch", "Graph", "Type", "Value", "Color"});
    fTree->setColumnWidth(fColName, 300);
    fTree->resizeColumnToContents(fColType);
    fTree->resizeColumnToContents(fColValue);
    fTree->setSortingEnabled(true);
    fTree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    fTree->setAccessibleName("Keys");
    pane->addWidget(fTree, 0, 0);
}

void Widget::xSetUpCommands(QGridLayout* pane, const QString& imageDir)
{
    auto* watchAll = new QCheckBox("Watch All", this);
    auto* graphAll = new QCheckBox("Graph All", this);
    auto* refresh = new QPushButton(QIcon(imageDir + fRefreshImg), QString(), this);
    refresh->setToolTip("Refresh All");
    refresh->setAccessibleName("Refresh All");
    fSubscriptionBox = new QComboBox(this);
    auto* subscriptionLabel = new QLabel("Subscription Mode:", this);
    subscriptionLabel->setBuddy(fSubscriptionBox);

    auto* rows = new QVBoxLayout;
    const QVector<QVector<QWidget*>> widgets{
        {watchAll, graphAll}, {refresh}, {subscriptionLabel, fSubscriptionBox}};
    for (const QVector<QWidget*>& inRow : widgets) {
        auto* row = new QHBoxLayout;
        for (QWidget* widget : inRow)
            row->addWidget(widget);
        row->addStretch();
        rows->addLayout(row);
    }
    pane->addLayout(rows, 1, 0);

    connect(watchAll, SIGNAL(stateChanged(int)), this, SLOT(xOnWatchAll(int)));
    connect(graphAll, SIGNAL(stateChanged(int)), this, SLOT(xOnGraphAll(int)));
    for (const auto mode : {Model::SUBSCRIBE_EVERY, Model::SUBSCRIBE_NONE})
        fSubscriptionBox->addItem(fromLatin1(Model::subscribeModeToString(mode)));
    connect(refresh, SIGNAL(clicked()), this, SLOT(xOnRefreshAll()));
    connect(fSubscriptionBox, SIGNAL(currentIndexChanged(int)), this,
            SLOT(xOnChangeSubscription(int)));
    connect(fTree, SIGNAL(itemClicked(QTreeWidgetItem*, int)), this,
            SLOT(xOnItemClicked(QTreeWidgetItem*, int)));
}

void Widget::xSetUpGraph(QGridLayout* pane, const QString& imageDir)
{
    fGraph = new Graph(xModel(), this);
    fGraph->init();
    pane->addWidget(fGraph, 0, 0);
    pane->setRowStretch(0, 1);
    pane->addWidget(new GraphConfig(fGraph, imageDir), 1, 0);
}

void Widget::xSetUpFileButtons(QGridLayout* pane, const QString& imageDir)
{
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel("Save/Merge config:", this));
    const QPushButton* save = xAddFileButton(row, imageDir + fSaveImg, "Save");
    const QPushButton* open = xAddFileButton(row, imageDir + fOpenImg, "Open");
    row->addStretch();
    connect(save, SIGNAL(clicked()), this, SLOT(xSaveConfig()));
    connect(open, SIGNAL(clicked()), this, SLOT(xLoadConfig()));
    pane->addLayout(row, 2, 0);
}

QPushButton* Widget::xAddFileButton(QBoxLayout* row, const QString& image, const QString& toolTip)
{
    auto* button = new QPushButton(QIcon(image), QString(), this);
    button->setToolTip(toolTip);
    button->setAccessibleName(toolTip);
    button->setFixedSize(20, 20);
    button->setFlat(true);
    row->addWidget(button);
    return button;
}

void Widget::xSetUpTimers()
{
    fTreeTimer->setInterval(fRefreshInterval);
    connect(fTreeTimer, SIGNAL(timeout()), this, SLOT(xRefreshTree()));
    fTreeTimer->start();

    const int period = xModel() ? xModel()->fTimePolicy : Model().fTimePolicy;
    connect(fDataTimer, SIGNAL(timeout()), this, SLOT(xOnRefresh()));
    fDataTimer->setInterval(period);
    fDataTimer->setSingleShot(true);
    fDataTimer->start();
    if (fModule)
        fModule->changeSubscription(Model::SUBSCRIBE_EVERY, period);
    connect(this, SIGNAL(disconnected(WidgetInterface*)), fDataTimer, SLOT(stop()));
}

boost::shared_ptr<Model> Widget::xModel() const
{
    return fModule ? fModule->fModel : boost::shared_ptr<Model>();
}

KeyTree& Widget::xTable() const
{
    return static_cast<KeyTree&>(*fTree);
}

void Widget::resetTree()
{
    const boost::shared_ptr<Model> model = xModel();
    if (!model)
        return;
    if (fGraph)
        fGraph->clear();
    fTree->clear();
    fRows.clear();
    const ZoCriticalSectionRead lock(model->fMutex);
    fRows = RowBuilder(xTable()).build(*model);
    if (!fGraph)
        return;
    for (const boost::shared_ptr<STMVal>& value : model->fSTMVals)
        if (value->graph)
            fGraph->addSTMValue(fromLatin1(value->names.second), &value->color);
}

void Widget::refreshTree()
{
    fTreeDirty = true;
}

void Widget::xRefreshTree()
{
    if (!fTreeDirty)
        return;
    fTreeDirty = false;
    {
        const KeyTree::WriteBatch batch(xTable());
        for (const auto& row : std::as_const(fRows)) {
            if (!row.first || !row.second)
                continue;
            xUselessNameUpdate(row.second);
            row.second->setText(fColType, fromLatin1(row.first->type));
            row.second->setText(fColValue, fromLatin1(row.first->value));
        }
    }
    fTree->update();
}

/// A name never changes, but who listens to the model hears of each row at each refresh, as if it
/// had: writing a text that the cell already holds would go unheard, so another goes between.
void Widget::xUselessNameUpdate(QTreeWidgetItem* pItem)
{
    if (!pItem)
        return;
    const KeyTree::WriteBatch batch(xTable());
    const QString name = pItem->text(fColName);
    pItem->setText(fColName, "vieux flan rabougri");
    pItem->setText(fColName, name);
}

void Widget::xOnRefresh()
{
    const boost::shared_ptr<Module> module = fModule;
    if (!module)
        return;
    module->getDatas(false);
    fDataTimer->start();
}

void Widget::xOnRefreshAll()
{
    const boost::shared_ptr<Module> module = fModule;
    if (module)
        module->getDatas(true);
}

void Widget::xOnItemClicked(QTreeWidgetItem* pItem, int pColumn)
{
    const boost::shared_ptr<Module> module = fModule;
    if (!module || !pItem)
        return;
    const KeyTree::WriteBatch batch(xTable());
    xUselessNameUpdate(pItem);
    RowFlags flags(*module, fGraph, fRows);
    if (pColumn == fColWatch)
        flags.takeWatch(*pItem);
    else if (pColumn == fColGraph)
        flags.takeGraph(*pItem);
}

void Widget::xOnWatchAll(int pCheckState)
{
    xSetAll(fColWatch, pCheckState);
}

void Widget::xOnGraphAll(int pCheckState)
{
    xSetAll(fColGraph, pCheckState);
}

/// A click on the box of each row, but with one look-up of all keys.
void Widget::xSetAll(int column, int checkState)
{
    const boost::shared_ptr<Module> module = fModule;
    if (!module)
        return;
    const KeyTree::WriteBatch batch(xTable());
    const QList<QTreeWidgetItem*> items = fTree->findItems(QString(), Qt::MatchContains, fColName);
    for (QTreeWidgetItem* item : items) {
        item->setData(column, Qt::CheckStateRole, checkState);
        xUselessNameUpdate(item);
    }
    RowFlags flags(*module, fGraph, fRows);
    if (column == fColWatch)
        flags.takeWatch(items, checkState == Qt::Checked);
    else
        flags.takeGraph(items, checkState == Qt::Checked);
}

void Widget::xOnChangeSubscription(int /*pIndex*/)
{
    const boost::shared_ptr<Module> module = fModule;
    if (!module)
        return;
    const Model::SubscribeMode mode =
        Model::subscribeModeFromString(toLatin1(fSubscriptionBox->currentText()));
    switch (mode) {
    case Model::SUBSCRIBE_EVERY:
        xAskForPeriod();
        break;
    case Model::SUBSCRIBE_ON_DATA:
        module->changeSubscription(mode, 0);
        break;
    case Model::SUBSCRIBE_UNKNOWN:
        break;
    case Model::SUBSCRIBE_NONE:
        fDataTimer->stop();
        module->changeSubscription(mode, 0);
        break;
    }
}

void Widget::xAskForPeriod()
{
    const boost::shared_ptr<Model> model = xModel();
    if (!model)
        return;
    const QPointer<Widget> self(this);
    const KeptForSignal kept(fSubscriptionBox, this);
    bool confirmed = false;
    const int period =
        QInputDialog::getInt(this, tr("Time interval"), tr("Get data every (ms):"),
                             model->fTimePolicy, Model::fMinTime, Model::fMaxTime, 1, &confirmed);
    if (!self)
        return;
    if (confirmed)
        xSetPeriod(period);
    else
        fSubscriptionBox->setCurrentIndex(1);
}

void Widget::xSetPeriod(int period)
{
    fDataTimer->setInterval(period);
    fDataTimer->start();
    fModule->changeSubscription(Model::SUBSCRIBE_EVERY, period);
}

void Widget::xSaveConfig()
{
    const boost::shared_ptr<Module> module = fModule;
    if (module)
        ConfigFiles(*this).save(module->fModel);
}

void Widget::xLoadConfig()
{
    const boost::shared_ptr<Module> module = fModule;
    if (!module)
        return;
    const ConfigFiles files(*this);
    const QString file = files.askToOpen(tr("Merge with File"));
    if (file.isEmpty())
        return;
    try {
        ConfigManager::loadConfigurationFile(module, file);
    } catch (const std::runtime_error& error) {
        files.showError(QString::fromUtf8(error.what()));
        return;
    }
    resetTree();
    // Now, not with the next fetch: the graph takes a key without a value for no number.
    if (module->fGCInterface && module->fMemoryProxy)
        module->getDatas(true);
}
