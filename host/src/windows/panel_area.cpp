// SPDX-License-Identifier: MIT
#include "windows/panel_area.h"

#include "plugins/plugin_loader.h"
#include "windows/start_page.h"

#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>

PanelArea::PanelArea(const PluginLoader& plugins, QWidget* parent)
    : QStackedWidget(parent), fTabs(new QTabWidget(this))
{
    auto* startPage = new StartPage(plugins, this);
    addWidget(startPage);
    addWidget(fTabs);
    fTabs->setDocumentMode(true);
    connect(startPage, &StartPage::chosen, this, &PanelArea::chosen);
    connect(fTabs, &QTabWidget::currentChanged, this, &PanelArea::xUpdate);
}

void PanelArea::add(TarvekWidget* panel, PanelPlugin* plugin)
{
    fEntries.push_back({panel, plugin});
    fTabs->setCurrentIndex(fTabs->addTab(panel, plugin->name));
    addCloseButton(panel);
    xUpdate();
}

/// The tab's own close button is an image that vanishes before a dark background.
void PanelArea::addCloseButton(TarvekWidget* panel)
{
    auto* button = new QToolButton(fTabs);
    button->setText(QString(QChar(0x00d7)));
    button->setToolTip(tr("Close"));
    button->setAutoRaise(true);
    connect(button, &QToolButton::clicked, panel, &QObject::deleteLater);
    fTabs->tabBar()->setTabButton(fTabs->indexOf(panel), QTabBar::RightSide, button);
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

void PanelArea::xUpdate()
{
    setCurrentIndex(fTabs->count() == 0 ? 0 : 1);
    emit currentChanged();
}
