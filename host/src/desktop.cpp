// SPDX-License-Identifier: MIT
#include "desktop.h"

#include "connection/loss_limit.h"
#include "connection/recent_connections.h"
#include "dialogs/ending_question.h"
#include "dialogs/error_reporter.h"
#include "dialogs/offered_file.h"
#include "dialogs/window_order.h"
#include "plugins/resource_paths.h"
#include "plugins/root_element.h"
#include "robots/saved_robots.h"
#include "workspace/workspace_file.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>
#include <QSessionManager>
#include <QStringList>

#include <algorithm>
#include <utility>

namespace {

constexpr int deleteInterval = 20; ///< ms

/// Whether the command line says anything about the way to a robot.
bool saysHow(const CommandLine& line)
{
    const ConnectionSettings& settings = line.settings;
    return line.connectAtOnce || !settings.user.isEmpty() || !settings.password.empty() ||
           settings.tls || settings.timeout > 0 || !settings.jumpHost.isEmpty() ||
           !settings.prefix.isEmpty() || !settings.other.sentinel.empty() || settings.other.replica;
}

} // namespace

Desktop::Desktop(const CommandLine& commandLine, ErrorReporter& errors,
                 std::unique_ptr<Keyring> keyring)
    : fCommandLine(commandLine),
      fErrors(errors),
      fPasswords(std::move(keyring)),
      fWorkspaces({fPlugins, fPasswords,
                   [this](const WorkspaceWindow& window, const auto& broker) {
                       return openWorkspaceWindow(window, broker);
                   }},
                  errors, nullptr),
      fConnecting(fPasswords, errors)
{
    if (fCommandLine.imageDir.isEmpty())
        fCommandLine.imageDir = ownImageDir();
    fDeleteTimer.setInterval(deleteInterval);
    connect(&fDeleteTimer, &QTimer::timeout, this, &Desktop::xDeleteClosed);
    connect(&fConnecting, &Connecting::connected, this, &Desktop::xOnConnected);
    connect(&fConnecting, &Connecting::ended, this, &Desktop::xFinishIfNothingIsOpen);
    connect(&fPasswords, &KeptPasswords::failed, &fErrors, &ErrorReporter::note);
    connect(&fWorkspaces, &Workspaces::ended, this, &Desktop::xOnWorkspaceEnded);
    loadPlugins();
    followSession();
}

Desktop::~Desktop()
{
    fWorkspaces.disconnect(this);
    fConnecting.disconnect(this);
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

/// A session that ends may still go on, and asks for nothing that takes the user's time: windows
/// stay, and what is open is kept for the next session.
void Desktop::followSession()
{
    connect(qApp, &QGuiApplication::commitDataRequest, this, &Desktop::saveLooks);
    connect(qApp, &QGuiApplication::saveStateRequest, this, [this](QSessionManager& session) {
        const QString file = sessionFile(session.sessionId() + ' ' + session.sessionKey());
        if (keepForNextSession(file)) {
            session.setRestartCommand(sessionCommand(file));
            session.setDiscardCommand({"rm", "-f", "--", file});
        }
    });
}

bool Desktop::keepForNextSession(const QString& file) const
{
    // Nobody is there to be told what does not fit: all the rest is kept.
    const Workspace open = fitting(fWorkspaces.contentOf(fWindows), QFileInfo(file).absolutePath());
    return !open.windows.isEmpty() && QDir().mkpath(QFileInfo(file).absolutePath()) &&
           writeWorkspace(open, file).isEmpty();
}

QStringList Desktop::sessionCommand(const QString& file) const
{
    QStringList words{QCoreApplication::applicationFilePath(), "--workspace", file};
    for (const QString& plugin : fCommandLine.pluginFiles)
        words += {"--plugin", QFileInfo(plugin).absoluteFilePath()};
    for (const QString& folder : fCommandLine.pluginDirs)
        words += {"--plugin-dir", folder};
    if (fCommandLine.imageDir != ownImageDir())
        words += {"--image-dir", fCommandLine.imageDir};
    if (!fCommandLine.language.isEmpty())
        words += {"--language", fCommandLine.language};
    if (fCommandLine.lostAfter)
        words += {"--lost-after", QString::number(fCommandLine.lostAfter->count())};
    return words;
}

void Desktop::saveLooks() const
{
    for (const MainWindow* window : fWindows)
        window->saveLook();
}

void Desktop::start()
{
    if (!fCommandLine.workspace.isEmpty()) {
        fWorkspaces.open(fCommandLine.workspace, nullptr);
        return;
    }
    if (!fCommandLine.connectAtOnce) {
        showConnectDialog();
        return;
    }
    const ConnectionSettings settings = commandLineSettings();
    if (settings.keepsPassword && settings.password.empty())
        fConnecting.connectWithKeptPassword(settings);
    else
        connectTo(settings);
}

void Desktop::showConnectDialog()
{
    fConnecting.ask(firstSettings());
}

void Desktop::connectTo(const ConnectionSettings& settings)
{
    fConnecting.connectTo(settings);
}

void Desktop::xOnConnected(const ConnectionSettings& pSettings,
                           const boost::shared_ptr<ZoBroker>& pBroker, MainWindow* pAgain)
{
    remember(pSettings);
    MainWindow* const window = pAgain ? pAgain : openWindow(pSettings, pBroker);
    for (MainWindow* other : fWindows)
        other->learnFrom(*window);
    fConnecting.closeDialog();
    if (!pAgain)
        openFirstPanel(window);
}

void Desktop::remember(const ConnectionSettings& settings)
{
    const bool isOfCommandLine =
        fCommandLine.connectAtOnce && isSameRobot(settings, fCommandLine.settings);
    if (isOfCommandLine && fCommandLine.forgets)
        return;
    fPasswords.keep(settings);
    rememberConnection(settings);
    rememberLastRobot(settings);
}

/// It has no option for the keyring: what the user wants for its robot stays as it is.
ConnectionSettings Desktop::commandLineSettings() const
{
    ConnectionSettings settings = fCommandLine.settings;
    if (fCommandLine.connectAtOnce && KeptPasswords::isWantedFor(settings))
        settings.keepsPassword = true;
    return settings;
}

/// What stands in a new dialog: what the command line says, or else the robot used last.
ConnectionSettings Desktop::firstSettings() const
{
    if (saysHow(fCommandLine))
        return commandLineSettings();
    if (const auto robot = lastRobot())
        return robot->settings;
    const QList<ConnectionSettings> recent = recentConnections();
    return recent.isEmpty() ? fCommandLine.settings : recent.first();
}

MainWindow* Desktop::openWorkspaceWindow(const WorkspaceWindow& window,
                                         const boost::shared_ptr<ZoBroker>& broker)
{
    if (window.robot.keepsPassword)
        fPasswords.keep(window.robot); // which the user may just have typed
    MainWindow* const opened = openWindow(window.robot, broker, &window.content.look);
    for (MainWindow* other : fWindows)
        other->learnFrom(*opened);
    return opened;
}

/// One without windows has told the user why: they may choose a robot now.
void Desktop::xOnWorkspaceEnded()
{
    if (fWindows.isEmpty() && fClosedWindows.isEmpty())
        showConnectDialog();
}

MainWindow* Desktop::openWindow(const ConnectionSettings& settings,
                                const boost::shared_ptr<ZoBroker>& broker, const WindowLook* look)
{
    const WindowContext context{fPlugins, fErrors, imageDirForPanels(fCommandLine.imageDir),
                                fCommandLine.lostAfter.value_or(storedLossLimit())};
    auto* window = new MainWindow(context, settings, broker);
    fWindows += window;
    connect(window, &MainWindow::newConnectionRequested, this, &Desktop::showConnectDialog);
    connect(window, &MainWindow::connectAgainRequested, this,
            [this, window] { fConnecting.askAgainFor(window); });
    connect(window, &MainWindow::lossLimitChosen, this, &Desktop::xOnLossLimitChosen);
    connect(window, &MainWindow::quitRequested, this, [this, window] { quit(window); });
    connect(window, &MainWindow::saveWorkspaceRequested, this,
            [this, window] { fWorkspaces.save(window, fWindows); });
    connect(window, &MainWindow::openWorkspaceRequested, this,
            [this, window](const QString& file) { fWorkspaces.open(file, window); });
    connect(window, &MainWindow::closed, this, [this, window] {
        fWindows.removeOne(window);
        fClosedWindows += window;
        fDeleteTimer.start();
    });
    if (look)
        window->setLook(*look);
    window->show();
    return window;
}

void Desktop::xOnLossLimitChosen(std::chrono::seconds pLimit)
{
    storeLossLimit(pLimit);
    fCommandLine.lostAfter = pLimit;
    for (MainWindow* window : fWindows)
        window->monitor().setLimit(pLimit);
}

void Desktop::openFirstPanel(MainWindow* window)
{
    const QString file = std::exchange(fCommandLine.file, {});
    const bool isForFile = fCommandLine.panel.isEmpty();
    if (isForFile && file.isEmpty())
        return;
    PanelPlugin* plugin =
        isForFile ? fPlugins.openerOf(rootElementOf(file)) : fPlugins.find(fCommandLine.panel);
    if (plugin) {
        // Its start-up dialog runs an event loop of its own: let this function return first.
        QTimer::singleShot(0, window, [window, plugin, file] {
            const OfferedFile offered(file);
            window->openPanel(plugin);
        });
        return;
    }
    fErrors.report(window, isForFile ? withoutOpener(file) : withoutPanel());
}

QString Desktop::withoutOpener(const QString& file)
{
    return tr("No panel opens %1.\n\nGive a configuration that a panel has saved, or a workspace "
              "(*.tarvek).")
        .arg(file);
}

/// Why the panel of the command line does not open, and what to do.
QString Desktop::withoutPanel() const
{
    QStringList names;
    for (const auto& found : fPlugins.plugins())
        names += found->name;
    QString text = tr("There is no panel \"%1\". Found: %2")
                       .arg(fCommandLine.panel, names.isEmpty() ? tr("none") : names.join(", "));
    if (const int failed = static_cast<int>(fPlugins.failures().size()))
        text +=
            tr("\n\n%n plug-in(s) could not be loaded: \"Help\", \"Plug-ins that failed...\" says "
               "why.",
               nullptr, failed);
    return text;
}

void Desktop::closeAll()
{
    fConnecting.callOff();
    {
        const QSignalBlocker quiet(fWorkspaces); // its end asks for a robot when there is no window
        fWorkspaces.endOpening();
    }
    const QList<MainWindow*> windows = fWindows;
    for (MainWindow* window : windows)
        window->close();
    xFinishIfNothingIsOpen();
}

void Desktop::quit(MainWindow* window)
{
    int running = 0;
    for (const MainWindow* one : std::as_const(fWindows))
        running += one->recordings();
    if (running == 0) {
        closeAll();
        return;
    }
    if (fQuitQuestion) {
        bringToFront(*fQuitQuestion);
        return;
    }
    fQuitQuestion = makeEndingQuestion(
        window,
        tr("%n recording(s) are running. Quitting ends them; their files are kept.", nullptr,
           running),
        tr("&End recordings and quit"), [this] { xQuit(); });
    // What it says stays true: nothing can be begun in another window meanwhile.
    fQuitQuestion->setWindowModality(Qt::ApplicationModal);
    fQuitQuestion->show();
}

/// Windows whose recordings have to end first close then.
void Desktop::xQuit()
{
    const QList<MainWindow*> windows = fWindows;
    for (MainWindow* window : windows)
        window->endRecordingsAndClose();
    closeAll();
}

void Desktop::endAll()
{
    for (MainWindow* window : std::as_const(fWindows))
        window->endRecordings();
    closeAll();
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
    if (fWindows.isEmpty() && fClosedWindows.isEmpty() && fConnecting.isOver() &&
        !fWorkspaces.isOpening())
        emit finished();
}
