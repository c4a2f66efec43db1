// SPDX-License-Identifier: MIT
#include "plugins/panel_maker.h"

#include "plugins/plugin_loader.h"

#include <kit/password_file.h>

#include <tarvek/tarvek_widget.h>
#include <tarvek/widget_interface.h>

#include <QCoreApplication>

#include <stdexcept>
#include <utility>

namespace {

/// The context that translators find the texts in.
struct PanelMaker
{
    Q_DECLARE_TR_FUNCTIONS(PanelMaker)
};

/// The plug-in's one instance holds the state of the panel it makes, so it makes one at a time.
class BusyGuard
{
public:
    explicit BusyGuard(PanelPlugin& plugin) : fPlugin(plugin)
    {
        if (plugin.isMakingPanel)
            throw std::runtime_error(
                PanelMaker::tr("Its start-up dialog is still open.").toStdString());
        plugin.isMakingPanel = true;
    }
    ~BusyGuard() { fPlugin.isMakingPanel = false; }
    BusyGuard(const BusyGuard&) = delete;
    BusyGuard& operator=(const BusyGuard&) = delete;

private:
    PanelPlugin& fPlugin;
};

void refuseWithoutRobot(const ZoBroker& link)
{
    const ZoLinkStatus status = link.linkStatus();
    if (status.connected)
        return;
    const QString advice = PanelMaker::tr("Open the panel again when the robot is connected.");
    const QString cause = status.opening ? PanelMaker::tr("The robot is not connected yet.")
                                         : QString::fromStdString(status.cause);
    throw std::runtime_error((cause + "\n\n" + advice).toStdString());
}

/// Once a panel or its parent is gone, its plug-in's members must not point to it.
void forgetWhenDestroyed(WidgetInterface& plugin, QWidget* holder)
{
    QObject::connect(holder, &QObject::destroyed, [&plugin, holder] {
        if (plugin.fParent == holder)
            plugin.fParent = nullptr;
    });
}

void forgetWhenDestroyed(WidgetInterface& plugin, TarvekWidget* panel)
{
    QObject::connect(panel, &QObject::destroyed, [&plugin, panel] {
        if (plugin.fPanel == panel)
            plugin.fPanel = nullptr;
    });
}

} // namespace

MadePanel makePanel(PanelPlugin& plugin, QWidget* holder, const ConnectionSettings& settings,
                    const ZoBroker& link, const std::string& imageDir)
{
    const BusyGuard busy(plugin);
    WidgetInterface& panels = *plugin.panels;
    if (panels.requiresConnection())
        refuseWithoutRobot(link);
    panels.fBrokerOptions = settings.brokerOptions();
    const kit::WipedAtEnd wiped(panels.fBrokerOptions.password);
    forgetWhenDestroyed(panels, holder);
    MadePanel made;
    try {
        made.panel =
            panels.getWidget(holder, settings.address.host, settings.address.port, imageDir);
    } catch (...) {
        panels.fPanel = nullptr;
        panels.fBroker.reset();
        throw;
    }
    // The window keeps the link; the plug-in would hold it open after the panel is closed.
    made.broker = std::move(panels.fBroker);
    panels.fBroker.reset();
    if (made.panel)
        forgetWhenDestroyed(panels, made.panel);
    return made;
}
