// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_settings.h"

#include <QString>
#include <QStringList>

#include <string>
#include <vector>

/// What the words of the command line ask for.
struct CommandLine
{
    enum class Action
    {
        Run,    ///< go on with the fields below
        Inform, ///< print `text` on standard output and end
        Refuse  ///< print `text` on standard error and end with status 2
    };

    Action action = Action::Run;
    QString text;

    ConnectionSettings settings;
    bool connectAtOnce = false; ///< an address was given
    QStringList pluginFiles;
    QStringList pluginDirs; ///< besides the program's own
    QString imageDir;       ///< empty: the program's own
    QString panel;          ///< opened as soon as a robot is connected; empty: none
};

/// Understands the words after the program's name. Reads the password file if one is given.
CommandLine parseCommandLine(const QStringList& words);

/// The same words, with each "--plugin FILE" as "--plugin=FILE": the toolkit has an option of that
/// name, too, and would take the two words for itself.
std::vector<std::string> hidePluginOption(const std::vector<std::string>& words);
