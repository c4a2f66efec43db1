// SPDX-License-Identifier: MIT
// Everything is as it should be, but no object comes out.

#include <tarvek/widget_interface.h>

#include <QObject>

class NoObject : public QObject, public WidgetInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.tarvek.desktop.WidgetInterface/0.1")
    Q_INTERFACES(WidgetInterface)

public:
    static void* operator new(size_t) noexcept { return nullptr; }
    static void* operator new(size_t, void* place) noexcept { return place; } // for its meta-type
    static void operator delete(void*) noexcept {}

    TarvekWidget* getWidget(QWidget*, const std::string&, int, const std::string&) override
    {
        return nullptr;
    }
};

#include "no_object.moc"
