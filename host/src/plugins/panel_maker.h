// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_settings.h"

#include <boost/shared_ptr.hpp>

#include <string>

class QWidget;
class TarvekWidget;
class ZoBroker;
struct PanelPlugin;

/// A new panel and its link to the robot; no panel when the user changed their mind.
struct MadePanel
{
    TarvekWidget* panel = nullptr;
    boost::shared_ptr<ZoBroker> broker; ///< may be empty: not every panel has one
};

/// Asks `plugin` for a panel in `holder`, which is its own; runs the panel's start-up dialogs.
/// Throws what the plug-in throws, and std::runtime_error when it is busy with a panel already, or
/// needs a robot and `link`, the window's, is down: it would wait for it, and the windows with it.
/// When no panel comes back the holder is to be deleted: what was begun in it would go on, unseen.
MadePanel makePanel(PanelPlugin& plugin, QWidget* holder, const ConnectionSettings& settings,
                    const ZoBroker& link, const std::string& imageDir);
