// SPDX-License-Identifier: MIT
#pragma once

#include "command_line.h"
#include "dialogs/connect_dialog.h"
#include "plugins/plugin_loader.h"
#include "windows/main_window.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

/// The whole program but its event loop: plug-ins, windows, and the way from the command line or
/// the connect dialog to a window.
class Desktop : public QObject
{
    Q_OBJECT

public:
    Desktop(const CommandLine& commandLine, ErrorReporter& errors);
    ~Desktop() override;

    /// Connects as the command line says, or asks.
    void start();

    const PluginLoader& plugins() const { return fPlugins; }
    const QList<MainWindow*>& windows() const { return fWindows; }
    ConnectDialog* connectDialog() const { return fDialog.data(); }

public slots:
    void showConnectDialog();
    /// Connects, and opens a window with the command line's panel; or connects the window that
    /// asked for it again, panels and all. Blocks until the robot answers, at most for the time
    /// that a connection may take.
    void connectTo(const ConnectionSettings& settings);
    void closeAll();

signals:
    /// Nothing is open any more.
    void finished();

private slots:
    void xOnRefused(const QString& pProblem);
    void xDeleteClosed();
    void xFinishIfNothingIsOpen();

private:
    void loadPlugins();
    void askAgain(const QString& problem, const ConnectionSettings& settings);
    void openDialog(const ConnectionSettings& settings);
    void askToConnectAgain(MainWindow* window);
    MainWindow* windowToConnectAgain(const ConnectionSettings& settings) const;
    MainWindow* openWindow(const ConnectionSettings& settings,
                           const boost::shared_ptr<ZoBroker>& broker);
    void openFirstPanel(MainWindow* window);

    CommandLine fCommandLine;
    ErrorReporter& fErrors;
    PluginLoader fPlugins;
    QPointer<ConnectDialog> fDialog;
    QPointer<MainWindow> fRefusedWindow; ///< that `fDialog` is for; null: for a new one
    QList<MainWindow*> fWindows;
    QList<MainWindow*> fClosedWindows; ///< not deleted yet: dialogs are still running in them
    QTimer fDeleteTimer;
};
