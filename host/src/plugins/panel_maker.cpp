// SPDX-License-Identifier: MIT
#include "plugins/panel_maker.h"

#include "plugins/plugin_loader.h"

#include <tarvek/tarvek_widget.h>
#include <tarvek/widget_interface.h>

#include <QCoreApplication>

#include <stdexcept>
#include <utility>

namespace {

/// The plug-in's one instance holds the state of the panel it makes, so it makes one at a time.
class BusyGuard
{
public:
    explicit BusyGuard(PanelPlugin& plugin) : fPlugin(plugin)
    {
        if (plugin.isMakingPanel)
            throw std::runtime_error(
                QCoreApplication::translate("PanelMaker", "Its start-up dialog is still open.")
                    .toStdString());
        plugin.isMakingPanel = true;
    }
    ~BusyGuard() { fPlugin.isMakingPanel = false; }
    BusyGuard(const BusyGuard&) = delete;
    BusyGuard& operator=(const BusyGuard&) = delete;

private:
    PanelPlugin& fPlugin;
};

/// Deletes what a failed attempt left in the window: it would go on fetching, unseen.
class StrayPanels
{
public:
    explicit StrayPanels(QWidget* window) : fWindow(window) {}
    ~StrayPanels()
    {
        qDeleteAll(fWindow->findChildren<TarvekWidget*>(QString(), Qt::FindDirectChildrenOnly));
    }
    StrayPanels(const StrayPanels&) = delete;
    StrayPanels& operator=(const StrayPanels&) = delete;

private:
    QWidget* fWindow;
};

/// Once a panel is gone its plug-in's members must not point to it, nor hold its link open.
void forgetWhenDestroyed(WidgetInterface* plugin, TarvekWidget* panel)
{
    QObject::connect(panel, &QObject::destroyed, [plugin, panel] {
        if (plugin->fPanel == panel) {
            plugin->fPanel = nullptr;
            plugin->fParent = nullptr;
        }
    });
}

} // namespace

MadePanel makePanel(PanelPlugin& plugin, QWidget* window, const ConnectionSettings& settings,
                    const std::string& imageDir)
{
    const BusyGuard busy(plugin);
    WidgetInterface& panels = *plugin.panels;
    panels.fBrokerOptions = settings.brokerOptions();
    MadePanel made;
    try {
        made.panel =
            panels.getWidget(window, settings.address.host, settings.address.port, imageDir);
    } catch (...) {
        const StrayPanels stray(window);
        panels.fPanel = nullptr;
        panels.fBroker.reset();
        throw;
    }
    // The window keeps the link; the plug-in would hold it open after the panel is closed.
    made.broker = std::move(panels.fBroker);
    panels.fBroker.reset();
    if (made.panel)
        forgetWhenDestroyed(&panels, made.panel);
    return made;
}
