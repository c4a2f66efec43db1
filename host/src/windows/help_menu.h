// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <functional>

class PluginLoader;
class QMainWindow;

/// The menu "Help" of a window.
class HelpMenu : public QObject
{
    Q_OBJECT

public:
    /// `diagnostics` says all that helps to understand a problem of the window.
    HelpMenu(const PluginLoader& plugins, std::function<QString()> diagnostics,
             QMainWindow* window);

signals:
    void noted(const QString& text);
    void failed(const QString& problem);

private slots:
    void xShowGuide();
    void xShowShortcuts();
    void xShowFailures();
    void xCopyDiagnostics();
    void xShowAbout();

private:
    const PluginLoader& fPlugins;
    const std::function<QString()> fDiagnostics;
    QMainWindow* fWindow;
};
