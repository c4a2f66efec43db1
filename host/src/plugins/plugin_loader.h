// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class WidgetInterface;

/// A plug-in that offers a panel.
struct PanelPlugin
{
    QString name;               ///< its own
    QString label;              ///< as in the menu: the name, and the file where names are equal
    QString file;               ///< where it was found
    QString catalogue;          ///< of its texts in other languages; empty: it has none
    QString opens;              ///< root element of the XML files that it opens; empty: none
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
    Q_DECLARE_TR_FUNCTIONS(PluginLoader)

public:
    /// Loads every shared library in `folder`, by name. A missing folder is a failure, too.
    void loadFolder(const QString& folder);
    /// Loads one file, whatever its name. A file that is loaded already is left out.
    void loadFile(const QString& path);

    /// In the order of loading; the addresses stay.
    const std::vector<std::unique_ptr<PanelPlugin>>& plugins() const { return fPlugins; }
    /// The first one with this label or name, in capitals or not; null when there is none.
    PanelPlugin* find(const QString& name) const;

    /// The first one whose panels open XML files with this root element; null when there is none.
    PanelPlugin* openerOf(const QString& rootElement) const;

    const std::vector<PluginFailure>& failures() const { return fFailures; }
    const QStringList& folders() const { return fFolders; }

private:
    void addFailure(const QString& path, const QString& reason);
    void tellApart();

    std::vector<std::unique_ptr<PanelPlugin>> fPlugins;
    std::vector<PluginFailure> fFailures;
    QStringList fFolders;
    QStringList fKnownFiles;
};
