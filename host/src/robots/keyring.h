// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_settings.h"

#include <QString>

#include <functional>
#include <memory>
#include <string>

/// Where the desktop keeps passwords for its user. Nothing waits for it: what comes of an operation
/// is told later, on the thread of the GUI, or never when this has gone.
class Keyring
{
public:
    using Found = std::function<void(std::string& password)>;
    using Failed = std::function<void(const QString& cause)>;

    virtual ~Keyring() = default;

    /// Says what is kept under `name`; an empty text when there is nothing, or no keyring.
    virtual void read(const QString& name, const Found& found) = 0;
    virtual void write(const QString& name, const std::string& password, const Failed& failed) = 0;
    virtual void forget(const QString& name) = 0;
};

/// That of the desktop's own, which need not be there.
std::unique_ptr<Keyring> systemKeyring();

/// Under which name the password of `settings` is kept there.
QString keyringName(const ConnectionSettings& settings);
