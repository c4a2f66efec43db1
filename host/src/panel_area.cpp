#include "panel_area.h"

#include "plugin_loader.h"
#include "start_page.h"

#include <QTabWidget>

PanelArea::PanelArea(const PluginLoader& plugins, QWidget* parent)
    : QStackedWidget(parent), fTabs(new QTabWidget(this))
{
    auto* startPage = new StartPage(plugins, this);
    addWidget(startPage);
    addWidget(fTabs);
    fTabs->setDocumentMode(true);
    fTabs->setTabsClosable(true);
    connect(startPage, &StartPage::chosen, this, &PanelArea::chosen);
    connect(fTabs, &QTabWidget::tabCloseRequested, this, &PanelArea::xClose);
    connect(fTabs, &QTabWidget::currentChanged, this, &PanelArea::xUpdate);
}

void PanelArea::add(TarvekWidget* panel, PanelPlugin* plugin)
{
    fEntries.push_back({panel, plugin});
    fTabs->setCurrentIndex(fTabs->addTab(panel, plugin->name));
    xUpdate();
}

TarvekWidget* PanelArea::current() const
{
    return qobject_cast<TarvekWidget*>(fTabs->currentWidget());
}

void PanelArea::tellDisconnected()
{
    for (const Entry& entry : fEntries) {
        if (entry.panel)
            tellDisconnected(entry.panel, entry.plugin);
    }
}

void PanelArea::tellDisconnected(TarvekWidget* panel, PanelPlugin* plugin)
{
    // As an event of its own: an exception out of one panel's slot must not keep the news from
    // the next panel.
    QMetaObject::invokeMethod(
        panel, [panel, plugin] { emit panel->disconnected(plugin->panels); }, Qt::QueuedConnection);
}

void PanelArea::xClose(int pIndex)
{
    if (QWidget* panel = fTabs->widget(pIndex))
        panel->deleteLater();
}

void PanelArea::xUpdate()
{
    setCurrentIndex(fTabs->count() == 0 ? 0 : 1);
    emit currentChanged();
}
