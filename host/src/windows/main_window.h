// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_monitor.h"
#include "connection/connection_settings.h"

#include <QMainWindow>

#include <string>

class ConnectionBar;
class ErrorReporter;
class PanelArea;
class PluginLoader;
class QAction;
struct PanelPlugin;

/// What all windows share; outlives them.
struct WindowContext
{
    const PluginLoader& plugins;
    ErrorReporter& errors;
    std::string imageDir; ///< as panels take it
};

/// The window of one robot. It stays hidden, but alive, after it was closed: whoever made it
/// deletes it as soon as `isIdle()`, because dialogs may still be running in it until then.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow(const WindowContext& context, const ConnectionSettings& settings,
               const boost::shared_ptr<ZoBroker>& broker);
    ~MainWindow() override;

    const ConnectionSettings& settings() const { return fSettings; }
    ConnectionMonitor& monitor() { return fMonitor; }

    /// Opens the links of this window and its panels anew, to the same robot. The panels stay.
    /// Throws what ZoBroker::reconnect does.
    void reconnect(const ConnectionSettings& settings);

    /// Makes one more panel, unless one is being made; an error ends in an error box.
    void openPanel(PanelPlugin* plugin);

    /// Closes the dialogs that still run in this closed window; true once none does.
    bool isIdle();

signals:
    void newConnectionRequested();
    void connectAgainRequested(); ///< to the same robot, which has refused
    void quitRequested();
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;

private slots:
    void xSavePicture();
    void xShowFailures();
    void xShowAbout();
    void xOnChanged();
    void xOnLost();
    void xUpdateActions();

private:
    void setUpFileMenu();
    void setUpPanelMenu();
    void setUpHelpMenu();
    void setUpStatus(const boost::shared_ptr<ZoBroker>& broker);
    void addPanel(PanelPlugin* plugin);
    void rejectDialogs();

    WindowContext fContext;
    ConnectionSettings fSettings;
    ConnectionMonitor fMonitor;
    PanelArea* fArea;
    ConnectionBar* fBar;
    QAction* fSaveAction = nullptr;
    QList<QAction*> fPanelActions; ///< in the order of the plug-ins
    bool fIsMakingPanel = false;
    bool fIsClosed = false;
};
