// SPDX-License-Identifier: MIT
#include "desktop.h"

#include "connection/recent_connections.h"
#include "dialogs/error_reporter.h"
#include "plugins/resource_paths.h"

#include <kit/password_file.h>

#include <QApplication>
#include <QStringList>

namespace {

constexpr int deleteInterval = 20; ///< ms

/// Shows the user that the program is busy.
class WaitCursor
{
public:
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

boost::shared_ptr<ZoBroker> makeBroker(const ConnectionSettings& settings)
{
    const WaitCursor busy;
    ZoBrokerOptions options = settings.brokerOptions();
    const kit::WipedAtEnd wiped(options.password); // the broker has its own
    return ZoBroker::create("TarvekDesktop", settings.address.host, settings.address.port, options);
}

} // namespace

Desktop::Desktop(const CommandLine& commandLine, ErrorReporter& errors)
    : fCommandLine(commandLine), fErrors(errors)
{
    if (fCommandLine.imageDir.isEmpty())
        fCommandLine.imageDir = ownImageDir();
    fDeleteTimer.setInterval(deleteInterval);
    connect(&fDeleteTimer, &QTimer::timeout, this, &Desktop::xDeleteClosed);
    loadPlugins();
}

Desktop::~Desktop()
{
    delete fDialog;
    qDeleteAll(fWindows);
    qDeleteAll(fClosedWindows);
}

void Desktop::loadPlugins()
{
    for (const QString& file : fCommandLine.pluginFiles)
        fPlugins.loadFile(file);
    for (const QString& folder : fCommandLine.pluginDirs)
        fPlugins.loadFolder(folder);
    fPlugins.loadFolder(ownPluginDir());
}

void Desktop::start()
{
    if (fCommandLine.connectAtOnce)
        connectTo(fCommandLine.settings);
    else
        showConnectDialog();
}

void Desktop::showConnectDialog()
{
    fRefusedWindow = nullptr;
    openDialog(fCommandLine.settings);
}

void Desktop::askToConnectAgain(MainWindow* window)
{
    if (fDialog)
        fDialog->close(); // it may be there for another robot
    fDialog = nullptr;
    fRefusedWindow = window;
    openDialog(window->settings());
}

void Desktop::openDialog(const ConnectionSettings& settings)
{
    if (!fDialog) {
        fDialog = new ConnectDialog(recentConnections(), settings);
        fDialog->setAttribute(Qt::WA_DeleteOnClose);
        connect(fDialog, &ConnectDialog::connectRequested, this, &Desktop::connectTo);
        connect(fDialog, &ConnectDialog::refused, this, &Desktop::xOnRefused);
        connect(fDialog, &QObject::destroyed, this, &Desktop::xFinishIfNothingIsOpen,
                Qt::QueuedConnection);
    }
    fDialog->show();
    fDialog->raise();
    fDialog->activateWindow();
}

void Desktop::connectTo(const ConnectionSettings& settings)
{
    MainWindow* const refused = windowToConnectAgain(settings);
    boost::shared_ptr<ZoBroker> broker;
    try {
        // A window that connects again has links of its own; but none of them tells at once, as a
        // new broker does, whether the robot is there and lets the user in.
        broker = makeBroker(settings);
        if (refused)
            refused->reconnect(settings);
    } catch (const std::exception& error) {
        askAgain(
            tr("There is no connection to %1.\n\n%2\n\nCheck the address and the port, what the "
               "robot asks for (user, password, encryption), and whether it is on.")
                .arg(settings.addressText(), QString::fromUtf8(error.what())),
            settings);
        return;
    }
    rememberConnection(settings);
    MainWindow* const opened = refused ? nullptr : openWindow(settings, broker);
    if (fDialog)
        fDialog->accept();
    if (opened)
        openFirstPanel(opened);
}

/// The window that asked for the dialog, if the user did not choose another robot there.
MainWindow* Desktop::windowToConnectAgain(const ConnectionSettings& settings) const
{
    const bool isAskedFor = fDialog && fWindows.contains(fRefusedWindow) &&
                            fRefusedWindow->settings().address == settings.address;
    return isAskedFor ? fRefusedWindow.data() : nullptr;
}

void Desktop::askAgain(const QString& problem, const ConnectionSettings& settings)
{
    openDialog(settings);
    fErrors.report(fDialog, problem);
}

void Desktop::xOnRefused(const QString& pProblem)
{
    fErrors.report(fDialog, pProblem);
}

MainWindow* Desktop::openWindow(const ConnectionSettings& settings,
                                const boost::shared_ptr<ZoBroker>& broker)
{
    const WindowContext context{fPlugins, fErrors, imageDirForPanels(fCommandLine.imageDir)};
    auto* window = new MainWindow(context, settings, broker);
    fWindows += window;
    connect(window, &MainWindow::newConnectionRequested, this, &Desktop::showConnectDialog);
    connect(window, &MainWindow::connectAgainRequested, this,
            [this, window] { askToConnectAgain(window); });
    connect(window, &MainWindow::quitRequested, this, &Desktop::closeAll);
    connect(window, &MainWindow::closed, this, [this, window] {
        fWindows.removeOne(window);
        fClosedWindows += window;
        fDeleteTimer.start();
    });
    window->show();
    return window;
}

void Desktop::openFirstPanel(MainWindow* window)
{
    if (fCommandLine.panel.isEmpty())
        return;
    PanelPlugin* plugin = fPlugins.find(fCommandLine.panel);
    if (plugin) {
        // Its start-up dialog runs an event loop of its own: let this function return first.
        QTimer::singleShot(0, window, [window, plugin] { window->openPanel(plugin); });
        return;
    }
    QStringList names;
    for (const auto& found : fPlugins.plugins())
        names += found->name;
    fErrors.report(window,
                   tr("There is no panel \"%1\". Found: %2")
                       .arg(fCommandLine.panel, names.isEmpty() ? tr("none") : names.join(", ")));
}

void Desktop::closeAll()
{
    if (fDialog)
        fDialog->reject();
    const QList<MainWindow*> windows = fWindows;
    for (MainWindow* window : windows)
        window->close();
    xFinishIfNothingIsOpen();
}

void Desktop::xDeleteClosed()
{
    const QList<MainWindow*> windows = fClosedWindows;
    for (MainWindow* window : windows) {
        if (window->isIdle()) {
            fClosedWindows.removeOne(window);
            delete window;
        }
    }
    if (fClosedWindows.isEmpty())
        fDeleteTimer.stop();
    xFinishIfNothingIsOpen();
}

void Desktop::xFinishIfNothingIsOpen()
{
    if (fWindows.isEmpty() && fClosedWindows.isEmpty() && !fDialog)
        emit finished();
}
