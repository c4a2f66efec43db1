// SPDX-License-Identifier: MIT
#pragma once

#include "config_manager.h"
#include "model.h"
#include "module.h"

#include <QString>

#include <boost/make_shared.hpp>

#include <stdexcept>
#include <string>

/// Words for tests that save and load configurations.

inline boost::shared_ptr<Module> newModule()
{
    return boost::make_shared<Module>(boost::shared_ptr<ZoMemoryProxy>());
}

inline STMVal& addEntry(Module& module, const std::string& name, const std::string& alias)
{
    const auto value = boost::make_shared<STMVal>();
    value->names = {name, alias};
    value->color.red = 1;
    value->color.green = 20;
    value->color.blue = 254;
    module.addSTMVal(value);
    return *value;
}

/// The message of the exception that `action` throws; empty when it throws none.
template <class Action>
QString messageOf(Action action)
{
    try {
        action();
    } catch (const std::runtime_error& error) {
        return QString::fromUtf8(error.what());
    }
    return QString();
}

inline QString loadMessage(const boost::shared_ptr<Module>& module, const QString& path)
{
    return messageOf([&] { ConfigManager::loadConfigurationFile(module, path); });
}

inline QString saveMessage(const boost::shared_ptr<Module>& module, const QString& path)
{
    return messageOf([&] { ConfigManager::saveConfigurationFile(module->fModel, path); });
}
