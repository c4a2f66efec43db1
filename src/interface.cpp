// SPDX-License-Identifier: MIT
#include "interface.h"

#include "config_dialog.h"
#include "latin1.h"
#include "modal_dialog.h"
#include "module.h"
#include "widget.h"

#include <zo/memory_proxy.h>

#include <boost/make_shared.hpp>

/// Hosts that load plug-ins in the way of earlier toolkits compare this text with their own.
// NOLINTNEXTLINE(readability-identifier-naming): the name is theirs
extern "C" Q_DECL_EXPORT const char* qt_plugin_query_verification_data()
{
    return "pattern=QT_PLUGIN_VERIFICATION_DATA\n"
           "version=4.8.1\n"
           "debug=false\n"
           "buildkey=x86_64 linux g++-4 full-config";
}

TarvekWidget* Interface::getWidget(QWidget* parent, const std::string& ip, int port,
                                   const std::string& imageDir)
{
    fParent = parent;
    initBroker(fBroker, "GlimmetBroker", ip, port, imageDir);

    // An empty name means the memory that the local broker itself holds.
    const std::string moduleName = "ZoMemory";
    boost::shared_ptr<ZoMemoryProxy> proxy;
    if (!moduleName.empty())
        proxy = boost::make_shared<ZoMemoryProxy>(fBroker->getProxy(moduleName, 0));
    else
        proxy = boost::make_shared<ZoMemoryProxy>(fBroker->getThis());

    auto module = boost::make_shared<Module>(proxy);
    proxy.reset(); // the module alone owns it from here on
    const QPointer<Widget> panel = new Widget(module, fromLatin1(imageDir), parent);
    fPanel = panel;
    module->fGCInterface = panel;

    const QPointer<QWidget> window(parent);
    ModalDialog<ConfigDialog> dialog(module, imageDir, parent);
    parent->setWindowTitle(fromLatin1("Tarvek Desktop (connected to " + ip + ")"));
    const bool accepted = dialog.exec();
    if (!window)
        fParent = nullptr;
    if (!accepted || !panel) {
        delete panel.data(); // already gone when the host has deleted its window meanwhile
        fPanel = nullptr;
        return nullptr;
    }
    panel->resetTree();
    module->getDatas(true);
    return panel;
}
