// SPDX-License-Identifier: MIT
// The smallest plug-in of somebody else: leaves a word in the robot's memory and shows a panel.

#include <tarvek/tarvek_widget.h>
#include <tarvek/widget_interface.h>

#include <zo/zo.h>

#include <QObject>

class Other : public QObject, public WidgetInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.tarvek.desktop.WidgetInterface/0.1")
    Q_INTERFACES(WidgetInterface)

public:
    TarvekWidget* getWidget(QWidget* parent, const std::string& ip, int port,
                            const std::string& imageDir) override
    {
        initBroker(fBroker, "Other", ip, port, imageDir);
        ZoMemoryProxy(fBroker->getProxy("ZoMemory", 0)).setData("Other/Images", imageDir);
        return fPanel = new TarvekWidget(parent);
    }
};

#include "other.moc"
