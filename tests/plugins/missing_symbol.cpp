// SPDX-License-Identifier: MIT
// Needs a function that nobody has.

#include <QObject>
#include <QtPlugin>

extern "C" int functionThatNobodyHas();

class MissingSymbol : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.tarvek.desktop.WidgetInterface/0.1")

public:
    MissingSymbol() { setProperty("answer", functionThatNobodyHas()); }
};

#include "missing_symbol.moc"
