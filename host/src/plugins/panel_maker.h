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

/// Asks `plugin` for a panel in `window`; runs the panel's start-up dialogs. Throws what the
/// plug-in throws, and std::runtime_error when it is busy with a panel already.
MadePanel makePanel(PanelPlugin& plugin, QWidget* window, const ConnectionSettings& settings,
                    const std::string& imageDir);
