// SPDX-License-Identifier: MIT
// Never has a panel, as if the user had cancelled.

#include <tarvek/widget_interface.h>

#include <QObject>
#include <QWidget>

class Nothing : public QObject, public WidgetInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.tarvek.desktop.WidgetInterface/0.1")
    Q_INTERFACES(WidgetInterface)

public:
    TarvekWidget* getWidget(QWidget* parent, const std::string&, int, const std::string&) override
    {
        fParent = parent;
        parent->window()->setProperty("wasAsked", true);
        return nullptr;
    }
};

#include "nothing.moc"
