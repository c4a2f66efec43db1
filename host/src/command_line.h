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
        Run,
        Help,
        Version
    };

    Action action = Action::Run;
    ConnectionSettings settings;
    std::string warning;        ///< for standard error; empty: none
    bool connectAtOnce = false; ///< an address was given
    QStringList pluginFiles;
    QStringList pluginDirs; ///< besides the program's own
    QString imageDir;       ///< empty: the program's own
    QString panel;          ///< opened as soon as a robot is connected; empty: none
};

/// Understands the words after the program's name. Reads the password file if one is given. Throws
/// kit::UsageError.
CommandLine parseCommandLine(const std::vector<std::string>& words);

/// What parseCommandLine will make of the words, seen beforehand: nothing is read but the words,
/// and those that mean nothing here may be the toolkit's own.
CommandLine::Action actionOf(const std::vector<std::string>& words);

/// What --help and --version print.
std::string desktopHelp();
std::string desktopVersion();

/// The same words, with each "--plugin FILE" as "--plugin=FILE": the toolkit has an option of that
/// name, too, and would take the two words for itself.
std::vector<std::string> hidePluginOption(const std::vector<std::string>& words);
