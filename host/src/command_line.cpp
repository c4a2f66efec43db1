// SPDX-License-Identifier: MIT
#include "command_line.h"

#include "connection/loss_limit.h"
#include "connection/ssh_relay.h"
#include "language/languages.h"

#include <kit/connection_options.h>
#include <kit/options_text.h>
#include <kit/password_file.h>
#include <kit/usage_error.h>
#include <kit/version_text.h>

#include <zo/error.h>

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

QString existingFile(const Text& option, const Text& path)
{
    const QFileInfo file(QFile::decodeName(path.c_str()));
    if (!file.isFile())
        throw kit::UsageError(option + ": there is no file '" + path + "'");
    return file.absoluteFilePath();
}

/// A double click on a file comes in here.
void readFile(kit::Words& words, CommandLine& line)
{
    if (words.empty())
        return;
    const Text name = words.take();
    const QFileInfo info(QFile::decodeName(name.c_str()));
    if (!info.isFile())
        throw kit::UsageError("there is no file '" + name +
                              "'; an address is given with --connect HOST[:PORT]");
    if (!words.empty())
        throw kit::UsageError("'" + words.next() + "' is one file too many");
    if (!line.workspace.isEmpty())
        throw kit::UsageError("--workspace: has robots and panels of its own: leave '" + name +
                              "' out");
    const bool isWorkspace = info.suffix().compare("tarvek", Qt::CaseInsensitive) == 0;
    (isWorkspace ? line.workspace : line.file) = info.absoluteFilePath();
}

QString jumpHost(const Text& option, const Text& text)
{
    try {
        checkJumpHost(text);
    } catch (const std::exception& error) {
        throw kit::UsageError(option + ": " + error.what());
    }
    return QString::fromStdString(text);
}

/// The other ways of a robot, which the toolkit's programs have, too, are checked with theirs.
void refuseUnfitNodes(const ConnectionSettings& settings)
{
    try {
        checkNodes(settings);
    } catch (const ZoError& error) {
        throw kit::UsageError((settings.jumpHost.isEmpty() ? "--sentinel: " : "--ssh: ") +
                              error.toString());
    }
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

QString knownLanguage(const Text& option, const Text& code)
{
    QString language = QString::fromLocal8Bit(code.c_str());
    if (!languages().contains(language))
        throw kit::UsageError(option + ": there is no language '" + code +
                              "', but these: " + languages().join(", ").toStdString());
    return language;
}

kit::Option languageOption(CommandLine& line)
{
    kit::Option option{
        {"--language"},
        "CODE",
        "show all texts in this language, not in the system's: " +
            languages().join(", ").toStdString(),
        [&line](const Text& name, const Text& code) { line.language = knownLanguage(name, code); }};
    for (const QString& code : languages())
        option.choices.push_back(code.toStdString());
    return option;
}

/// What is about one robot, besides how to reach it.
kit::Options ownRobotOptions(CommandLine& line)
{
    return {
        {{"--ssh"},
         "USER@HOST",
         "reach the robot by way of this host, through the system's ssh, its keys and its agent",
         [&line](const Text& name, const Text& text) {
             line.settings.jumpHost = jumpHost(name, text);
         }},
        {{"--panel"},
         "NAME",
         "open this panel as soon as a robot is connected",
         [&line](const Text&, const Text& name) {
             line.panel = QString::fromLocal8Bit(name.c_str());
         }},
        kit::flag("--no-remember",
                  "leave the robot of --connect out of those to choose from next time",
                  line.forgets),
    };
}

/// Of each of these that is there, `line` notes the name.
kit::Options noted(kit::Options options, CommandLine& line)
{
    for (kit::Option& option : options)
        option.store = [&line, store = option.store](const Text& name, const Text& value) {
            line.ofOneRobot = name;
            store(name, value);
        };
    return options;
}

kit::Options ownOptions(CommandLine& line)
{
    return {
        {{"--workspace"},
         "FILE",
         "open the robots and panels that \"Save workspace\" kept there; goes with none of the "
         "options above, which are about one robot",
         [&line](const Text& name, const Text& path) {
             line.workspace = existingFile(name, path);
         }},
        {{"--lost-after"},
         "S",
         "how long panels wait for a robot that is away until they give up (3600)",
         [&line](const Text& name, const Text& text) {
             const int longest = static_cast<int>(longestLossLimit.count());
             line.lostAfter = std::chrono::seconds(kit::numberFrom(name, text, 0, longest));
         }},
        languageOption(line),
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
    const kit::Options ofOneRobot =
        kit::joined(kit::connectionOptions(connection), ownRobotOptions(line));
    return kit::joined(kit::joined(noted(ofOneRobot, line), ownOptions(line)), aboutOptions(line));
}

} // namespace

CommandLine parseCommandLine(const std::vector<std::string>& words)
{
    CommandLine line;
    kit::Connection connection;
    kit::Words rest(words);
    if (kit::readOptions(rest, allOptions(line, connection)) == kit::OptionsEnd::Settled)
        return line;
    readFile(rest, line);
    if (!line.ofOneRobot.empty() && !line.workspace.isEmpty())
        throw kit::UsageError("--workspace: has robots and panels of its own: leave " +
                              line.ofOneRobot + " out");
    kit::completeConnection(connection);
    line.connectAtOnce = connection.isGiven;
    const QString jumpHost = line.settings.jumpHost;
    line.settings = ConnectionSettings(connection.address, connection.options);
    line.settings.jumpHost = jumpHost;
    refuseUnfitNodes(line.settings);
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

kit::Completion completeCommandLine(const std::vector<std::string>& words)
{
    CommandLine line;
    kit::Connection connection;
    kit::Words rest(words);
    const kit::Completion file{{}, true};
    return kit::completeOptions(rest, allOptions(line, connection)).value_or(file);
}

std::string desktopHelp()
{
    CommandLine any;
    kit::Connection connection;
    return "Usage: tarvek-desktop [OPTION]... [FILE]\n"
           "Shows tool panels for robots on the network. Without --connect it asks for a robot.\n"
           "FILE is a workspace (*.tarvek), or a configuration that a panel has saved: a panel "
           "for\n"
           "it opens, and begins with that file where it asks for one.\n"
           "\n" +
           kit::optionsText(allOptions(any, connection));
}

std::string desktopVersion()
{
    return kit::versionText(QCoreApplication::applicationName().toStdString(),
                            {{"Qt", qVersion()}, {"QtKeychain", TARVEK_KEYCHAIN_VERSION}});
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
