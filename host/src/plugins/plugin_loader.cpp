// SPDX-License-Identifier: MIT
#include "plugins/plugin_loader.h"

#include "language/languages.h"
#include "plugins/plugin_toolkit.h"

#include <tarvek/widget_interface.h>

#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QPluginLoader>

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace {

/// Why a file cannot be used.
class Unusable : public std::runtime_error
{
public:
    explicit Unusable(const QString& reason) : std::runtime_error(reason.toStdString()) {}
};

/// Before the toolkit looks at it, which would complain on standard error and say less.
void refuseWhatIsNotForIt(const QString& path)
{
    if (QFileInfo(path).size() == 0)
        throw Unusable(PluginLoader::tr("It is no plug-in: the file is empty."));
    const std::optional<int> toolkit = pluginToolkit(path);
    if (toolkit && *toolkit != QT_VERSION_MAJOR)
        throw Unusable(
            PluginLoader::tr("It was built with Qt %1, and this program with Qt %2. Get a "
                             "version made for this program.")
                .arg(*toolkit)
                .arg(QT_VERSION_MAJOR));
}

/// The library's own description, read without running any of its code.
QJsonObject describe(const QPluginLoader& loader)
{
    QJsonObject description = loader.metaData();
    if (description.isEmpty())
        throw Unusable(PluginLoader::tr("It is no plug-in: %1").arg(loader.errorString()));
    const QString offered = description.value("IID").toString();
    const QString wanted = qobject_interface_iid<WidgetInterface*>();
    if (offered != wanted)
        throw Unusable(PluginLoader::tr(
                           "It offers the interface \"%1\", but panels have \"%2\". Get a version "
                           "made for this program.")
                           .arg(offered, wanted));
    return description;
}

WidgetInterface* instanceOf(QPluginLoader& loader)
{
    QObject* object = loader.instance();
    if (!object && !loader.isLoaded())
        throw Unusable(loader.errorString());
    if (!object)
        throw Unusable(PluginLoader::tr("It is loaded, but makes no plug-in object."));
    auto* panels = qobject_cast<WidgetInterface*>(object);
    if (!panels)
        throw Unusable(PluginLoader::tr("Its plug-in object (%1) has no panel interface.")
                           .arg(object->metaObject()->className()));
    return panels;
}

std::unique_ptr<PanelPlugin> load(const QString& path)
{
    refuseWhatIsNotForIt(path);
    QPluginLoader loader(path);
    // Symbols are looked up now: a missing one is a failure of this file, not a crash later.
    loader.setLoadHints(QLibrary::ResolveAllSymbolsHint);
    const QJsonObject description = describe(loader);
    const QJsonObject own = description.value("MetaData").toObject();
    const QString named = own.value("name").toString();
    auto plugin = std::make_unique<PanelPlugin>();
    plugin->name = named.isEmpty() ? QFileInfo(path).completeBaseName() : named;
    plugin->file = path;
    plugin->opens = own.value("opens").toString();
    plugin->catalogue = own.value("catalogue").toString();
    plugin->panels = instanceOf(loader);
    return plugin;
}

} // namespace

void PluginLoader::loadFolder(const QString& folder)
{
    const QDir dir(folder);
    if (fFolders.contains(dir.absolutePath()))
        return;
    fFolders += dir.absolutePath();
    if (!dir.exists()) {
        addFailure(dir.absolutePath(), tr("There is no such folder."));
        return;
    }
    for (const QFileInfo& file : dir.entryInfoList({"*.so"}, QDir::Files, QDir::Name))
        loadFile(file.absoluteFilePath());
}

void PluginLoader::loadFile(const QString& path)
{
    const QFileInfo info(path);
    const QString file = info.absoluteFilePath();
    if (!info.isFile()) {
        addFailure(file, tr("There is no such file."));
        return;
    }
    if (fKnownFiles.contains(info.canonicalFilePath()))
        return;
    fKnownFiles += info.canonicalFilePath();
    try {
        fPlugins.push_back(load(file));
        speakAlso(fPlugins.back()->catalogue);
        tellApart();
    } catch (const std::exception& error) {
        addFailure(file, QString::fromUtf8(error.what()));
    } catch (...) {
        addFailure(file, tr("It failed in a way it does not describe."));
    }
}

/// Two copies of a plug-in have one name: the folders say which is which.
void PluginLoader::tellApart()
{
    for (const auto& plugin : fPlugins) {
        const auto isNamesake = [&plugin](const auto& other) {
            return other->name == plugin->name;
        };
        const bool isAlone = std::count_if(fPlugins.begin(), fPlugins.end(), isNamesake) == 1;
        plugin->label = isAlone ? plugin->name : tr("%1 (%2)").arg(plugin->name, plugin->file);
    }
}

PanelPlugin* PluginLoader::find(const QString& name) const
{
    for (const QString PanelPlugin::*text : {&PanelPlugin::label, &PanelPlugin::name}) {
        for (const auto& plugin : fPlugins)
            if (((*plugin).*text).compare(name, Qt::CaseInsensitive) == 0)
                return plugin.get();
    }
    return nullptr;
}

PanelPlugin* PluginLoader::openerOf(const QString& rootElement) const
{
    for (const auto& plugin : fPlugins)
        if (!rootElement.isEmpty() && plugin->opens == rootElement)
            return plugin.get();
    return nullptr;
}

void PluginLoader::addFailure(const QString& path, const QString& reason)
{
    fFailures.push_back({path, reason});
}
