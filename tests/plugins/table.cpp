// SPDX-License-Identifier: MIT
// A panel with a table beside something else, as many have. It needs no robot.

#include <tarvek/tarvek_widget.h>
#include <tarvek/widget_interface.h>

#include <QLabel>
#include <QSplitter>
#include <QTreeWidget>
#include <QVBoxLayout>

class TablePanel : public TarvekWidget
{
    Q_OBJECT

public:
    explicit TablePanel(QWidget* parent) : TarvekWidget(parent)
    {
        setObjectName("tablePanel");
        auto* splitter = new QSplitter(this);
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(splitter);
        auto* table = new QTreeWidget(splitter);
        table->setHeaderLabels({"Name", "On", "Value"});
        table->setSortingEnabled(true);
        for (int i = 0; i < 20; ++i) {
            auto* row = new QTreeWidgetItem(
                table, {"Joint " + QString::number(i), QString(), QString::number(i * 0.5)});
            row->setCheckState(1, i % 2 ? Qt::Checked : Qt::Unchecked);
        }
        splitter->addWidget(new QLabel("a curve", splitter));
    }
};

class Table : public QObject, public WidgetInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.tarvek.desktop.WidgetInterface/0.1" FILE "table.json")
    Q_INTERFACES(WidgetInterface)

public:
    TarvekWidget* getWidget(QWidget* parent, const std::string&, int, const std::string&) override
    {
        fParent = parent;
        fPanel = new TablePanel(parent);
        return fPanel;
    }
    bool requiresConnection() const override { return false; }
};

#include "table.moc"
