// SPDX-License-Identifier: MIT
#pragma once

#include "gc_interface.h"
#include "model.h"

#include <tarvek/tarvek_widget.h>

#include <QPair>
#include <QString>
#include <QVector>

#include <boost/shared_ptr.hpp>

class Graph;
class KeyTree;
class Module;
class QBoxLayout;
class QComboBox;
class QGridLayout;
class QPushButton;
class QTimer;
class QTreeWidget;
class QTreeWidgetItem;

/// The panel: a table of the followed keys with check boxes to watch and to graph them, the graph
/// with its controls, and the commands. Lives on the GUI thread. The table stays empty until
/// resetTree(). Made with an empty module, the panel is whole and its commands do nothing.
class Widget : public TarvekWidget, public GCInterface
{
    Q_OBJECT

public:
    // Columns of the table.
    static constexpr int fColName = 0; ///< a key's alias
    static constexpr int fColWatch = 1;
    static constexpr int fColGraph = 2;
    static constexpr int fColType = 3;
    static constexpr int fColValue = 4;
    static constexpr int fColColor = 5;

    static int fRefreshInterval;                 ///< of the table, ms; read by the constructor
    static constexpr int fDefaultInterval = 150; ///< ms; used by nobody: the Model has the period

    // Images, below the host's resource directory.
    static const QString fRefreshImg;
    static const QString fOpenImg;
    static const QString fSaveImg;

    static const QString fFileExtension; ///< of configuration files

    /// Each row's record and item, in the order in which the rows were made.
    using Rows = QVector<QPair<boost::shared_ptr<const STMVal>, QTreeWidgetItem*>>;

    /// `imageDir` stands directly in front of an image's relative path, so it ends in a slash. A
    /// missing image gives an empty icon.
    Widget(boost::shared_ptr<Module> module, const QString& imageDir, QWidget* parent);
    ~Widget() override;

    /// Makes the table and the curves anew. Holds the Model's read lock meanwhile.
    void resetTree() override;
    /// Has the cells written at the next tick of the table's timer. Costs nothing now.
    void refreshTree() override;

private slots:
    void xRefreshTree();
    void xOnRefresh();
    void xOnRefreshAll();
    void xOnChangeSubscription(int pIndex);
    void xOnItemClicked(QTreeWidgetItem* pItem, int pColumn);
    void xUselessNameUpdate(QTreeWidgetItem* pItem);
    void xSaveConfig();
    void xLoadConfig();
    void xOnWatchAll(int pCheckState);
    void xOnGraphAll(int pCheckState);

private:
    // In the order in which the constructor runs them.
    QGridLayout* xAddPane(QWidget* splitter);
    void xSetUpTable(QGridLayout* pane);
    void xSetUpCommands(QGridLayout* pane, const QString& imageDir);
    void xSetUpGraph(QGridLayout* pane, const QString& imageDir);
    void xSetUpFileButtons(QGridLayout* pane, const QString& imageDir);
    void xSetUpTimers();
    QPushButton* xAddFileButton(QBoxLayout* row, const QString& image, const QString& toolTip);

    boost::shared_ptr<Model> xModel() const;
    KeyTree& xTable() const;
    void xSetAll(int column, int checkState);
    void xAskForPeriod();
    void xSetPeriod(int period);

    boost::shared_ptr<Module> fModule;
    Graph* fGraph;
    QTreeWidget* fTree; ///< a KeyTree
    QComboBox* fSubscriptionBox;
    QTimer* fTreeTimer; ///< repeats: xRefreshTree()
    QTimer* fDataTimer; ///< single shot, started again after each fetch: xOnRefresh()
    bool fTreeDirty;    ///< whether values changed since the cells were last written
    Rows fRows;
};
