// SPDX-License-Identifier: MIT
#include "command_line.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <stdexcept>

namespace {

constexpr qint64 longestPasswordFile = 4096;

/// Leaves with the sentence that the user gets to read.
class Refusal : public std::runtime_error
{
public:
    explicit Refusal(const QString& text) : std::runtime_error(text.toStdString()) {}
};

QString tr(const char* text)
{
    return QCoreApplication::translate("CommandLine", text);
}

void addOptions(QCommandLineParser& parser)
{
    parser.setApplicationDescription(tr("Shows tool panels for robots on the network."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({
        {"connect", tr("Connect to the robot at this address at once."), "HOST[:PORT]"},
        {"user", tr("Sign in as this user."), "NAME"},
        {"password-file", tr("Sign in with the first line of this file."), "FILE"},
        {"tls", tr("Encrypt the connection.")},
        {"ca", tr("Trust the authorities in this PEM file (with --tls)."), "FILE"},
        {"plugin", tr("Load this plug-in, too. May be given again."), "FILE"},
        {"plugin-dir", tr("Load the plug-ins in this folder, too. May be given again."), "DIR"},
        {"image-dir", tr("Take the panels' images from this folder."), "DIR"},
        {"panel", tr("Open this panel as soon as a robot is connected."), "NAME"},
    });
}

QString readPassword(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Refusal(tr("cannot read the password file %1: %2").arg(path, file.errorString()));
    const QByteArray content = file.read(longestPasswordFile + 1);
    if (content.size() > longestPasswordFile)
        throw Refusal(tr("the password file %1 is longer than %2 bytes: its first line is to be "
                         "the password")
                          .arg(path)
                          .arg(longestPasswordFile));
    QByteArray line = content.mid(0, content.indexOf('\n'));
    if (line.endsWith('\r'))
        line.chop(1);
    if (line.isEmpty())
        throw Refusal(tr("the first line of the password file %1 is empty").arg(path));
    return QString::fromUtf8(line);
}

QString existingFolder(const QString& option, const QString& path)
{
    if (!QFileInfo(path).isDir())
        throw Refusal(tr("--%1: there is no folder %2").arg(option, path));
    return QDir(path).absolutePath();
}

ConnectionSettings connectionOf(const QCommandLineParser& parser)
{
    ConnectionSettings settings;
    if (parser.isSet("connect"))
        settings.address = ZoAddress::fromText(parser.value("connect").toStdString());
    settings.user = parser.value("user");
    settings.tls = parser.isSet("tls");
    settings.caFile = parser.value("ca");
    if (parser.isSet("password-file"))
        settings.password = readPassword(parser.value("password-file"));
    if (!settings.caFile.isEmpty() && !settings.tls)
        throw Refusal(tr("--ca needs --tls: without it nothing is checked or encrypted"));
    if (!settings.caFile.isEmpty() && !QFileInfo(settings.caFile).isReadable())
        throw Refusal(tr("--ca: cannot read the file %1").arg(settings.caFile));
    return settings;
}

void understand(const QCommandLineParser& parser, CommandLine& result)
{
    if (!parser.positionalArguments().isEmpty())
        throw Refusal(tr("\"%1\" is no option: a robot is given with --connect HOST[:PORT]")
                          .arg(parser.positionalArguments().first()));
    result.settings = connectionOf(parser);
    result.connectAtOnce = parser.isSet("connect");
    result.pluginFiles = parser.values("plugin");
    for (const QString& dir : parser.values("plugin-dir"))
        result.pluginDirs += existingFolder("plugin-dir", dir);
    if (parser.isSet("image-dir"))
        result.imageDir = existingFolder("image-dir", parser.value("image-dir"));
    result.panel = parser.value("panel");
}

} // namespace

CommandLine parseCommandLine(const QStringList& words)
{
    QCommandLineParser parser;
    addOptions(parser);
    CommandLine result;
    try {
        if (!parser.parse(QStringList(QCoreApplication::applicationFilePath()) + words))
            throw Refusal(parser.errorText());
        if (parser.isSet("help") || parser.isSet("help-all"))
            return {CommandLine::Action::Inform, parser.helpText(), {}, false, {}, {}, {}, {}};
        if (parser.isSet("version"))
            return {CommandLine::Action::Inform,
                    QCoreApplication::applicationName() + ' ' +
                        QCoreApplication::applicationVersion() + '\n',
                    {},
                    false,
                    {},
                    {},
                    {},
                    {}};
        understand(parser, result);
    } catch (const std::exception& refusal) {
        result.action = CommandLine::Action::Refuse;
        result.text = QString::fromUtf8(refusal.what());
    }
    return result;
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
