#pragma once

#include "connection_settings.h"

#include <QString>
#include <QStringList>

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
