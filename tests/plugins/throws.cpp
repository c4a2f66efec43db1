// SPDX-License-Identifier: MIT
// Half makes its panel, then gives up.

#include <tarvek/tarvek_widget.h>
#include <tarvek/widget_interface.h>

#include <zo/error.h>

#include <QObject>

class Throws : public QObject, public WidgetInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.tarvek.desktop.WidgetInterface/0.1")
    Q_INTERFACES(WidgetInterface)

public:
    TarvekWidget* getWidget(QWidget* parent, const std::string&, int, const std::string&) override
    {
        fPanel = new TarvekWidget(parent);
        throw ZoError("the arm is <b>too</b> short");
    }
};

#include "throws.moc"
