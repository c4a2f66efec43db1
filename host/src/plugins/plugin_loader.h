// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class WidgetInterface;

/// A plug-in that offers a panel.
struct PanelPlugin
{
    QString name;               ///< as in the menu
    QString file;               ///< where it was found
    WidgetInterface* panels;    ///< its one instance; stays until the program ends
    bool isMakingPanel = false; ///< while its getWidget runs
};

/// Why a file offers no panel.
struct PluginFailure
{
    QString file;
    QString reason;
};

/// Finds and loads plug-ins. A loaded library stays loaded, as its panels may outlive the loader.
class PluginLoader
{
public:
    /// Loads every shared library in `folder`, by name. A missing folder is a failure, too.
    void loadFolder(const QString& folder);
    /// Loads one file, whatever its name. A file that is loaded already is left out.
    void loadFile(const QString& path);

    /// In the order of loading; the addresses stay.
    const std::vector<std::unique_ptr<PanelPlugin>>& plugins() const { return fPlugins; }
    /// The first one with this name, in capitals or not; null when there is none.
    PanelPlugin* find(const QString& name) const;

    const std::vector<PluginFailure>& failures() const { return fFailures; }
    const QStringList& folders() const { return fFolders; }

private:
    void addFailure(const QString& path, const QString& reason);

    std::vector<std::unique_ptr<PanelPlugin>> fPlugins;
    std::vector<PluginFailure> fFailures;
    QStringList fFolders;
    QStringList fKnownFiles;
};
