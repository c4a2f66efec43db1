#include "config_manager.h"
#include "file_extension.h"
#include "graph.h"
#include "key_row.h"
#include "key_tree.h"
#include "latin1.h"
#include "module.h"
#include "widget.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>

#include <stdexcept>

namespace {

/// Empty when the user cancels. The dialog lives on the heap because it may be deleted while it
/// is open, together with its parent.
QString askForFile(const QPointer<QFileDialog>& dialog, QFileDialog::AcceptMode mode)
{
    dialog->setAcceptMode(mode);
    dialog->setFileMode(mode == QFileDialog::AcceptOpen ? QFileDialog::ExistingFile
                                                        : QFileDialog::AnyFile);
    const bool accepted = dialog->exec() == QDialog::Accepted && dialog;
    QString file = accepted ? dialog->selectedFiles().value(0) : QString();
    delete dialog;
    return file;
}

/// Keeps `widget` until the end of a scope, although `owner` is deleted meanwhile, because the
/// signal that brought us here still has to return into it.
class KeptForSignal
{
public:
    KeptForSignal(QWidget* widget, QWidget* owner) : fWidget(widget)
    {
        fConnection = QObject::connect(owner, &QObject::destroyed, [this] {
            fIsOrphan = true;
            fWidget->setParent(nullptr);
        });
    }
    ~KeptForSignal()
    {
        QObject::disconnect(fConnection);
        if (fIsOrphan)
            fWidget->deleteLater();
    }
    KeptForSignal(const KeptForSignal&) = delete;
    KeptForSignal& operator=(const KeptForSignal&) = delete;

private:
    QWidget* fWidget;
    QMetaObject::Connection fConnection;
    bool fIsOrphan = false;
};

QString fileFilter()
{
    return Widget::tr(configFileFilter().constData());
}

bool isChecked(const QTreeWidgetItem& item, int column)
{
    return item.data(column, Qt::CheckStateRole) == Qt::Checked;
}

} // namespace

void Widget::xOnItemClicked(QTreeWidgetItem* pItem, int pColumn)
{
    const boost::shared_ptr<Module> module = fModule;
    if (!module || !pItem)
        return;
    const KeyTree::WriteBatch batch(xTable());
    xUselessNameUpdate(pItem);
    const std::string alias = toLatin1(pItem->text(fColName));
    if (pColumn == fColWatch) {
        const bool watch = isChecked(*pItem, fColWatch);
        module->watchStmVal(alias, watch);
        xShowWatched(*pItem, watch);
    } else if (pColumn == fColGraph) {
        const bool graph = isChecked(*pItem, fColGraph);
        module->graphStmVal(alias, graph);
        xShowGraphed(*pItem, graph);
    }
}

/// What is not watched any more is not graphed either.
void Widget::xShowWatched(QTreeWidgetItem& item, bool watch)
{
    if (watch)
        return;
    if (fGraph)
        fGraph->deleteSTMValue(item.text(fColName));
    item.setCheckState(fColGraph, Qt::Unchecked);
}

/// What is graphed is watched, too.
void Widget::xShowGraphed(QTreeWidgetItem& item, bool graph)
{
    if (graph)
        item.setCheckState(fColWatch, Qt::Checked);
    if (!fGraph)
        return;
    const QString alias = item.text(fColName);
    if (!graph) {
        fGraph->deleteSTMValue(alias);
        return;
    }
    const auto* row = dynamic_cast<KeyRow*>(&item);
    fGraph->addSTMValue(alias, row ? &row->color() : nullptr);
}

void Widget::xOnWatchAll(int pCheckState)
{
    xSetAll(fColWatch, pCheckState);
}

void Widget::xOnGraphAll(int pCheckState)
{
    xSetAll(fColGraph, pCheckState);
}

/// A click on the box of each row, but with one look-up of all keys in the module.
void Widget::xSetAll(int column, int checkState)
{
    const boost::shared_ptr<Module> module = fModule;
    if (!module)
        return;
    const KeyTree::WriteBatch batch(xTable());
    const QList<QTreeWidgetItem*> items = fTree->findItems(QString(), Qt::MatchContains, fColName);
    std::vector<std::string> aliases;
    aliases.reserve(static_cast<std::size_t>(items.size()));
    for (QTreeWidgetItem* item : items) {
        item->setData(column, Qt::CheckStateRole, checkState);
        xUselessNameUpdate(item);
        aliases.push_back(toLatin1(item->text(fColName)));
    }
    const bool on = checkState == Qt::Checked;
    if (column == fColWatch)
        module->watchStmVals(aliases, on);
    else
        module->graphStmVals(aliases, on);
    for (QTreeWidgetItem* item : items)
        column == fColWatch ? xShowWatched(*item, on) : xShowGraphed(*item, on);
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
    if (!module)
        return;
    const QPointer<Widget> self(this);
    const QString file =
        askForFile(new QFileDialog(this, tr("Save configuration file"),
                                   QCoreApplication::applicationDirPath(), fileFilter()),
                   QFileDialog::AcceptSave);
    if (!self || file.isEmpty())
        return;
    try {
        ConfigManager::saveConfigurationFile(module->fModel, withConfigFileExtension(file));
    } catch (const std::runtime_error& error) {
        xShowError(QString::fromUtf8(error.what()));
    }
}

void Widget::xLoadConfig()
{
    const boost::shared_ptr<Module> module = fModule;
    if (!module)
        return;
    const QPointer<Widget> self(this);
    const QString file =
        askForFile(new QFileDialog(this, tr("Merge with File"),
                                   QCoreApplication::applicationDirPath(), fileFilter()),
                   QFileDialog::AcceptOpen);
    if (!self || file.isEmpty())
        return;
    try {
        ConfigManager::loadConfigurationFile(module, file);
    } catch (const std::runtime_error& error) {
        xShowError(QString::fromUtf8(error.what()));
        return;
    }
    resetTree();
}

void Widget::xShowError(const QString& text)
{
    const QPointer<QMessageBox> box =
        new QMessageBox(QMessageBox::Warning, tr("Error"), text, QMessageBox::Ok, this);
    box->exec();
    delete box;
}
