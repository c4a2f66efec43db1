// SPDX-License-Identifier: MIT
#include "command_line.h"

#include <kit/connection_options.h>
#include <kit/options_text.h>
#include <kit/password_file.h>
#include <kit/usage_error.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

using Text = std::string;
using Action = CommandLine::Action;

/// The folder's absolute path, since panels may change the working folder.
QString existingFolder(const Text& option, const Text& path)
{
    const QString name = QFile::decodeName(path.c_str());
    if (!QFileInfo(name).isDir())
        throw kit::UsageError(option + ": there is no folder '" + path + "'");
    return QDir(name).absolutePath();
}

/// With the names that the toolkit's programs have for them, too.
kit::Options aboutOptions(CommandLine& line)
{
    kit::Options options = kit::aboutOptions([&line] { line.action = Action::Help; },
                                             [&line] { line.action = Action::Version; });
    options[0].names.emplace_back("--help-all");
    options[1].names.emplace_back("-v");
    return options;
}

kit::Options ownOptions(CommandLine& line)
{
    return {
        {{"--panel"},
         "NAME",
         "open this panel as soon as a robot is connected",
         [&line](const Text&, const Text& name) {
             line.panel = QString::fromLocal8Bit(name.c_str());
         }},
        {{"--plugin"},
         "FILE",
         "load this plug-in, too; may be given again",
         [&line](const Text&, const Text& path) {
             line.pluginFiles += QFile::decodeName(path.c_str());
         }},
        {{"--plugin-dir"},
         "DIR",
         "load the plug-ins in this folder, too; may be given again",
         [&line](const Text& name, const Text& path) {
             line.pluginDirs += existingFolder(name, path);
         }},
        {{"--image-dir"},
         "DIR",
         "take the panels' images from this folder",
         [&line](const Text& name, const Text& path) {
             line.imageDir = existingFolder(name, path);
         }},
    };
}

kit::Options allOptions(CommandLine& line, kit::Connection& connection)
{
    return kit::joined(kit::joined(kit::connectionOptions(connection), ownOptions(line)),
                       aboutOptions(line));
}

} // namespace

CommandLine parseCommandLine(const std::vector<std::string>& words)
{
    CommandLine line;
    kit::Connection connection;
    kit::Words rest(words);
    if (kit::readOptions(rest, allOptions(line, connection)) == kit::OptionsEnd::Settled)
        return line;
    kit::refuseOperands(rest);
    kit::completeConnection(connection);
    line.connectAtOnce = connection.isGiven;
    line.settings = ConnectionSettings(connection.address, connection.options);
    line.warning = connection.warning;
    kit::wipe(connection.options.password);
    return line;
}

CommandLine::Action actionOf(const std::vector<std::string>& words)
{
    CommandLine line;
    kit::Connection connection;
    kit::Words rest(words);
    try {
        kit::readOptions(rest, allOptions(line, connection));
    } catch (const kit::UsageError&) {
        return Action::Run; // where it is told
    }
    return line.action;
}

std::string desktopHelp()
{
    CommandLine any;
    kit::Connection connection;
    return "Usage: tarvek-desktop [OPTION]...\n"
           "Shows tool panels for robots on the network. Without --connect it asks for a robot.\n"
           "\n" +
           kit::optionsText(allOptions(any, connection));
}

std::string desktopVersion()
{
    const QString words =
        QCoreApplication::applicationName() + ' ' + QCoreApplication::applicationVersion();
    return words.toStdString() + "\n";
}

std::vector<std::string> hidePluginOption(const std::vector<std::string>& words)
{
    std::vector<std::string> hidden;
    for (size_t i = 0; i < words.size(); ++i) {
        const bool isPair = words[i] == "--plugin" && i + 1 < words.size();
        hidden.push_back(isPair ? "--plugin=" + words[i + 1] : words[i]);
        if (isPair)
            ++i;
    }
    return hidden;
}
