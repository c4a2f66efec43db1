// SPDX-License-Identifier: MIT
#include "plugins/plugin_loader.h"

#include <tarvek/widget_interface.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QPluginLoader>

#include <stdexcept>

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("PluginLoader", text);
}

/// Why a file cannot be used.
class Unusable : public std::runtime_error
{
public:
    explicit Unusable(const QString& reason) : std::runtime_error(reason.toStdString()) {}
};

/// The library's own description, read without running any of its code.
QJsonObject describe(const QPluginLoader& loader)
{
    QJsonObject description = loader.metaData();
    if (description.isEmpty())
        throw Unusable(tr("It is no plug-in: %1").arg(loader.errorString()));
    const QString offered = description.value("IID").toString();
    const QString wanted = qobject_interface_iid<WidgetInterface*>();
    if (offered != wanted)
        throw Unusable(tr("It offers the interface \"%1\", but panels have \"%2\". Get a version "
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
        throw Unusable(tr("It is loaded, but makes no plug-in object."));
    auto* panels = qobject_cast<WidgetInterface*>(object);
    if (!panels)
        throw Unusable(tr("Its plug-in object (%1) has no panel interface.")
                           .arg(object->metaObject()->className()));
    return panels;
}

std::unique_ptr<PanelPlugin> load(const QString& path)
{
    QPluginLoader loader(path);
    // Symbols are looked up now: a missing one is a failure of this file, not a crash later.
    loader.setLoadHints(QLibrary::ResolveAllSymbolsHint);
    const QJsonObject description = describe(loader);
    const QString named = description.value("MetaData").toObject().value("name").toString();
    auto plugin = std::make_unique<PanelPlugin>();
    plugin->name = named.isEmpty() ? QFileInfo(path).completeBaseName() : named;
    plugin->file = path;
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
    } catch (const std::exception& error) {
        addFailure(file, QString::fromUtf8(error.what()));
    } catch (...) {
        addFailure(file, tr("It failed in a way it does not describe."));
    }
}

PanelPlugin* PluginLoader::find(const QString& name) const
{
    for (const auto& plugin : fPlugins) {
        if (plugin->name.compare(name, Qt::CaseInsensitive) == 0)
            return plugin.get();
    }
    return nullptr;
}

void PluginLoader::addFailure(const QString& path, const QString& reason)
{
    fFailures.push_back({path, reason});
}
