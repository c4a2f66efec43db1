// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_settings.h"

#include <kit/completion.h>

#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>
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
    std::string ofOneRobot;     ///< the last option that is about one robot; empty: there is none
    bool connectAtOnce = false; ///< an address was given
    bool forgets = false;       ///< that robot: it is not remembered
    QStringList pluginFiles;
    QStringList pluginDirs; ///< besides the program's own
    QString imageDir;       ///< empty: the program's own
    /// How long a robot may be away before it counts as lost; nothing: as the user's settings say.
    std::optional<std::chrono::seconds> lostAfter;
    QString language;  ///< of all texts, one of languages(); empty: as the system says
    QString workspace; ///< file with robots and panels to be opened; empty: none
    QString panel;     ///< opened as soon as a robot is connected; empty: none
    QString file;      ///< the same, for the panel that opens this file; empty: none
};

/// Understands the words after the program's name. Reads the password file if one is given. Throws
/// kit::UsageError.
CommandLine parseCommandLine(const std::vector<std::string>& words);

/// What parseCommandLine will make of the words, seen beforehand: nothing is read but the words,
/// and those that mean nothing here may be the toolkit's own.
CommandLine::Action actionOf(const std::vector<std::string>& words);

/// How a command line goes on whose last word is being written. Throws kit::UsageError.
kit::Completion completeCommandLine(const std::vector<std::string>& words);

/// What --help and --version print.
std::string desktopHelp();
std::string desktopVersion();

/// The same words, with each "--plugin FILE" as "--plugin=FILE": the toolkit has an option of that
/// name, too, and would take the two words for itself.
std::vector<std::string> hidePluginOption(const std::vector<std::string>& words);
