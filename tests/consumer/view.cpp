// SPDX-License-Identifier: MIT
#include <config_manager.h>

/// Headers of the panel are found in another project.
void (*save)(boost::shared_ptr<const Model>,
             const QString&) = &ConfigManager::saveConfigurationFile;
