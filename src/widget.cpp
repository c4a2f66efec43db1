#include "widget.h"

#include "color_button.h"
#include "file_extension.h"
#include "graph.h"
#include "graph_config.h"
#include "key_row.h"
#include "key_tree.h"
#include "latin1.h"
#include "module.h"
#include "row_ranks.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QTimer>

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
    fTree = new KeyTree(this);
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
    fTree->setSortingEnabled(false);
    xFillTable(*model);
    {
        const RowRanks ranks(*fTree);
        fTree->setSortingEnabled(true);
    }
    // Only now: buttons of rows that do not move any more cost less.
    xTable().installButtons(fColColor, [this](QTreeWidgetItem& item) -> QWidget* {
        const auto* row = dynamic_cast<KeyRow*>(&item);
        return row ? new ColorButton(row->color(), fTree->viewport()) : nullptr;
    });
    for (const int column : {fColName, fColType, fColValue, fColWatch, fColGraph, fColColor})
        fTree->resizeColumnToContents(column);
}

/// Makes all rows before the table gets any: it looks at them once.
void Widget::xFillTable(const Model& model)
{
    QList<QTreeWidgetItem*> items;
    items.reserve(static_cast<int>(model.fSTMVals.size()));
    fRows.reserve(static_cast<int>(model.fSTMVals.size()));
    for (const boost::shared_ptr<STMVal>& value : model.fSTMVals) {
        QTreeWidgetItem* item = xMakeRow(*value);
        if (value->graph && fGraph)
            fGraph->addSTMValue(item->text(fColName), &value->color);
        items.append(item);
        fRows.append({value, item});
    }
    fTree->addTopLevelItems(items);
}

QTreeWidgetItem* Widget::xMakeRow(STMVal& value)
{
    auto* item = new KeyRow(value.color);
    item->setFlags(Qt::ItemIsUserCheckable | Qt::ItemIsEnabled);
    item->setText(fColName, fromLatin1(value.names.second));
    item->setText(fColType, fromLatin1(value.type));
    item->setText(fColValue, fromLatin1(value.value));
    item->setCheckState(fColWatch, value.watch ? Qt::Checked : Qt::Unchecked);
    item->setCheckState(fColGraph, value.graph ? Qt::Checked : Qt::Unchecked);
    return item;
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
        for (const auto& row : qAsConst(fRows)) {
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
