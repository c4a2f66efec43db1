// SPDX-License-Identifier: MIT
#pragma once

#include "windows/panel_arrangement.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>

/// A window's size and place, and its docks: as the toolkit tells and takes them.
struct WindowLook
{
    QByteArray geometry; ///< empty: none is known
    QByteArray docks;
    QMap<QString, QString> titles; ///< that the user gave, by the name of the dock
};

/// A panel of a window.
struct PanelContent
{
    QString plugin; ///< its name
    QString dock;   ///< the name of its place, of which the look knows
    PanelArrangement arrangement;
};

/// All that it takes to open a window of one robot once more.
struct WindowContent
{
    WindowLook look;
    QList<PanelContent> panels;
};
