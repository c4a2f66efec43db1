#include <tarvek/widget_interface.h>

WidgetInterface::WidgetInterface() = default;

WidgetInterface::~WidgetInterface() = default;

bool WidgetInterface::requiresConnection() const
{
    return true;
}
