// SPDX-License-Identifier: MIT
#pragma once

#include "command_line.h"
#include "connecting.h"
#include "plugins/plugin_loader.h"
#include "robots/kept_passwords.h"
#include "windows/main_window.h"
#include "workspace/workspaces.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <chrono>

class QMessageBox;

/// The whole program but its event loop: plug-ins, windows, and what the command line asks for.
class Desktop : public QObject
{
    Q_OBJECT

public:
    Desktop(const CommandLine& commandLine, ErrorReporter& errors,
            std::unique_ptr<Keyring> keyring = systemKeyring());
    ~Desktop() override;

    /// Connects as the command line says, or asks.
    void start();

    const PluginLoader& plugins() const { return fPlugins; }
    const QList<MainWindow*>& windows() const { return fWindows; }
    ConnectDialog* connectDialog() const { return fConnecting.dialog(); }
    bool isConnecting() const { return fConnecting.isUnderWay(); }
    bool isOpeningWorkspace() const { return fWorkspaces.isOpening(); }

    /// Keeps what is open in that file; false when there is nothing, or no room for it.
    bool keepForNextSession(const QString& file) const;
    /// What starts the program again with the windows that are kept there.
    QStringList sessionCommand(const QString& file) const;

public slots:
    void showConnectDialog();
    /// Begins to connect; an attempt that is under way is called off. When the robot answers, opens
    /// a window with the command line's panel, or connects the window that asked for it again,
    /// panels and all.
    void connectTo(const ConnectionSettings& settings);
    void closeAll();
    /// The same, but asks the user about all recordings, over `window`, before any window closes.
    void quit(MainWindow* window);
    /// The same, without asking the user anything.
    void endAll();
    /// What windows and panels look like is known to the next ones from now on.
    void saveLooks() const;

signals:
    /// Nothing is open any more.
    void finished();

private slots:
    void xOnConnected(const ConnectionSettings& pSettings,
                      const boost::shared_ptr<ZoBroker>& pBroker, MainWindow* pAgain);
    void xOnWorkspaceEnded();
    void xOnLossLimitChosen(std::chrono::seconds pLimit);
    void xQuit();
    void xDeleteClosed();
    void xFinishIfNothingIsOpen();

private:
    void loadPlugins();
    void remember(const ConnectionSettings& settings);
    ConnectionSettings commandLineSettings() const;
    ConnectionSettings firstSettings() const;
    void followSession();
    MainWindow* openWindow(const ConnectionSettings& settings,
                           const boost::shared_ptr<ZoBroker>& broker,
                           const WindowLook* look = nullptr);
    MainWindow* openWorkspaceWindow(const WorkspaceWindow& window,
                                    const boost::shared_ptr<ZoBroker>& broker);
    void openFirstPanel(MainWindow* window);
    QString withoutPanel() const;
    static QString withoutOpener(const QString& file);

    CommandLine fCommandLine;
    ErrorReporter& fErrors;
    KeptPasswords fPasswords;
    PluginLoader fPlugins;
    Workspaces fWorkspaces;
    Connecting fConnecting;
    QPointer<QMessageBox> fQuitQuestion;
    QList<MainWindow*> fWindows;
    QList<MainWindow*> fClosedWindows; ///< not deleted yet: dialogs are still running in them
    QTimer fDeleteTimer;
};
