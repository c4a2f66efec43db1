// SPDX-License-Identifier: MIT
#include "windows/main_window.h"

#include "connection/connection_bar.h"
#include "connection/connection_text.h"
#include "connection/outage_bar.h"
#include "connection/ssh_relay.h"
#include "connection/traffic_text.h"
#include "dialogs/error_reporter.h"
#include "dialogs/loss_limit_dialog.h"
#include "dialogs/window_order.h"
#include "plugins/panel_maker.h"
#include "plugins/plugin_loader.h"
#include "recording/recordings.h"
#include "windows/diagnostics.h"
#include "windows/file_menu.h"
#include "windows/help_menu.h"
#include "windows/in_sight.h"
#include "windows/panel_commands.h"
#include "windows/panel_dock.h"
#include "windows/panel_docks.h"
#include "windows/panel_menu.h"
#include "windows/start_page.h"
#include "windows/window_settings.h"

#include <tarvek/widget_interface.h>

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QFontInfo>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <QStyle>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <utility>

MainWindow::MainWindow(const WindowContext& context, const ConnectionSettings& settings,
                       const boost::shared_ptr<ZoBroker>& broker)
    : fContext(context),
      fSettings(settings),
      fBroker(broker),
      fDocks(new PanelDocks(this)),
      fCommands(new PanelCommands(*fDocks, this)),
      fFileMenu(new FileMenu(*fCommands, this)),
      fRecordings(new Recordings(this, context.errors)),
      fStartPage(new StartPage(context.plugins, this)),
      fOutageBar(new OutageBar(settings.robotText(), this)),
      fBar(new ConnectionBar(settings.robotText(), this))
{
    setCentralWidget(fStartPage);
    addToolBar(Qt::TopToolBarArea, fOutageBar);
    setContextMenuPolicy(Qt::NoContextMenu); // docks are closed, not hidden
    connect(fStartPage, &StartPage::chosen, this, &MainWindow::openPanel);
    connect(fDocks, &PanelDocks::changed, this, &MainWindow::xOnDocksChanged);
    whenScreensChange(this, [this] { xBringIntoSight(); });
    setUpMenus();
    setUpStatus();
    setUpLook();
    emit fDocks->changed();
}

MainWindow::~MainWindow()
{
    delete fDocks; // it would tell a window that is half gone of each dock that goes
}

/// Wide enough for all columns of a table beside a plot, in letters of any size, where the screen
/// is. The frame around it, which nobody knows yet, has to have room there, too.
QSize MainWindow::firstSize() const
{
    const int edge = style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
    const QSize frame(2 * edge, style()->pixelMetric(QStyle::PM_TitleBarHeight) + 4 * edge);
    // Not by the height of their lines, which toolkits round in ways of their own.
    return (QSizeF(93.75, 56.25) * QFontInfo(font()).pixelSize())
        .toSize()
        .boundedTo(screen()->availableSize() - frame)
        .expandedTo(QSize(1, 1));
}

/// As the window closed last.
void MainWindow::setUpLook()
{
    resize(firstSize());
    setLook(savedLook());
}

void MainWindow::setLook(const WindowLook& look)
{
    const QSize size = this->size();
    if (!look.geometry.isEmpty() && !restoreGeometry(look.geometry))
        resize(size);
    if (mayPlaceWindows() && isAnotherShown())
        move(pos() + QPoint(1, 1) * style()->pixelMetric(QStyle::PM_TitleBarHeight));
    fDocks->setTitles(look.titles);
    setDocks(look.docks);
}

void MainWindow::setDocks(const QByteArray& docks)
{
    if (!docks.isEmpty())
        restoreState(docks);
    fCommands->endFinding();
}

/// A window that came up at the very place of another would hide it.
bool MainWindow::isAnotherShown() const
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    return std::any_of(widgets.begin(), widgets.end(), [this](const QWidget* widget) {
        return widget != this && widget->isVisible() && widget->pos() == pos() &&
               qobject_cast<const MainWindow*>(widget);
    });
}

WindowLook MainWindow::look() const
{
    return {saveGeometry(), saveState(), fDocks->titles()};
}

WindowContent MainWindow::content() const
{
    return {look(), fDocks->content()};
}

void MainWindow::keepPlaces(const QList<PanelContent>& panels)
{
    fDocks->keepPlaces(panels);
}

void MainWindow::dropPlace(const PanelContent& panel)
{
    fDocks->dropPlace(panel);
}

void MainWindow::saveLook() const
{
    fDocks->saveArrangements();
    ::saveLook(look());
}

void MainWindow::setUpMenus()
{
    connect(fFileMenu, &FileMenu::newConnectionRequested, this,
            &MainWindow::newConnectionRequested);
    connect(fFileMenu, &FileMenu::saveWorkspaceRequested, this,
            &MainWindow::saveWorkspaceRequested);
    connect(fFileMenu, &FileMenu::openWorkspaceRequested, this,
            &MainWindow::openWorkspaceRequested);
    connect(fFileMenu, &FileMenu::recordRequested, this, [this] { fRecordings->ask(fSettings); });
    connect(fFileMenu, &FileMenu::disconnectRequested, &fMonitor, &ConnectionMonitor::disconnect);
    connect(fFileMenu, &FileMenu::reconnectRequested, this, [this] { reconnect(); });
    connect(fFileMenu, &FileMenu::lossLimitRequested, this, &MainWindow::xChooseLossLimit);
    connect(fFileMenu, &FileMenu::closePanelRequested, this, &MainWindow::xClosePanel);
    connect(fFileMenu, &FileMenu::closeWindowRequested, this, &MainWindow::close);
    connect(fFileMenu, &FileMenu::quitRequested, this, &MainWindow::quitRequested);
    fCommands->addEditing(*menuBar()->addMenu(tr("&Edit")));
    fPanelMenu = new PanelMenu(fContext.plugins, *fCommands, this);
    connect(fPanelMenu, &PanelMenu::chosen, this, &MainWindow::openPanel);
    setUpHelpMenu();
}

void MainWindow::setUpHelpMenu()
{
    auto* help = new HelpMenu(
        fContext.plugins, [this] { return diagnosticsText(); }, this);
    connect(help, &HelpMenu::noted, fBar, &ConnectionBar::note);
    connect(help, &HelpMenu::failed, this, &MainWindow::xOnFailed);
}

QString MainWindow::diagnosticsText() const
{
    QStringList panels;
    for (const PanelDock* dock : fDocks->docks())
        panels += dock->plugin().label + ": " + dock->windowTitle();
    QStringList links;
    for (const ConnectionState& link : fMonitor.links())
        links += tr("%1 (%n panel(s)). %2", nullptr, link.panels)
                     .arg(connectionBrief(link, QDateTime::currentDateTime()),
                          connectionDetail(link, fSettings.robotText()));
    return diagnostics(fContext.plugins, fSettings,
                       links + trafficDetail(fMonitor.busiest()).split('\n'), panels);
}

void MainWindow::setUpStatus()
{
    statusBar()->addPermanentWidget(fBar, 1);
    connect(&fContext.errors, &ErrorReporter::noted, fBar, &ConnectionBar::note);
    connect(fOutageBar, &OutageBar::connectAgainRequested, this,
            &MainWindow::connectAgainRequested);
    connect(fOutageBar, &OutageBar::disconnectRequested, &fMonitor, &ConnectionMonitor::disconnect);
    connect(fOutageBar, &OutageBar::reconnectRequested, this, [this] { reconnect(); });
    connect(fOutageBar, &OutageBar::dismissed, &fMonitor, &ConnectionMonitor::forgetStopped);
    connect(fCommands, &PanelCommands::noted, fBar, &ConnectionBar::note);
    connect(fCommands, &PanelCommands::failed, this, &MainWindow::xOnFailed);
    connect(fRecordings, &Recordings::noted, fBar, &ConnectionBar::note);
    connect(&fMonitor, &ConnectionMonitor::changed, this, &MainWindow::xOnChanged);
    connect(this, &QWidget::windowTitleChanged, this, &MainWindow::xShowTitle);
    connect(&fMonitor, &ConnectionMonitor::measured, fBar, &ConnectionBar::showTraffic);
    fMonitor.setRemark([this] { return wordsOfSsh(fSettings); });
    fMonitor.setLimit(fContext.lossLimit);
    fMonitor.watch(fBroker);
}

void MainWindow::reconnect(const ConnectionSettings& settings)
{
    if (settings.relay)
        settings.relay->allowQuestions(); // the links are others than that of the attempt
    fMonitor.reconnect(settings);
    fSettings = settings;
}

void MainWindow::reconnect()
{
    if (fMonitor.state().refused) {
        emit connectAgainRequested();
        return;
    }
    if (fSettings.relay)
        fSettings.relay->allowQuestions();
    fMonitor.reconnect(fSettings, ConnectionMonitor::Which::Down);
}

void MainWindow::learnFrom(const MainWindow& other)
{
    // What was changed there must not be sent from here any more: a password that was replaced
    // would be refused, and might lock the account.
    if (fBroker->linkIdentity() == other.fBroker->linkIdentity()) {
        fSettings = other.fSettings;
    } else if (isSameRobot(fSettings, other.fSettings) &&
               fSettings.password != other.fSettings.password) {
        fSettings.password = other.fSettings.password;
        openWithSettings();
    }
}

/// A link that is up, too, which would send the old password once it is lost.
void MainWindow::openWithSettings()
{
    if (fSettings.relay)
        fSettings.relay->allowQuestions();
    try {
        fMonitor.reconnect(fSettings, ConnectionMonitor::Which::Wanted);
    } catch (const std::exception& error) {
        fContext.errors.note(QString::fromUtf8(error.what())); // they go on as they did
    }
}

void MainWindow::openPanel(PanelPlugin* plugin)
{
    // Its start-up dialog keeps the user from choosing another; this is for whoever calls.
    if (fIsMakingPanel)
        return;
    const QString problem = openPanelLike(plugin, {});
    if (!problem.isEmpty() && !fIsClosed)
        fContext.errors.report(this, problem);
}

QString MainWindow::openPanelLike(PanelPlugin* plugin, const PanelContent& like)
{
    if (fIsMakingPanel)
        return tr("The start-up dialog of another panel is still open.");
    fIsMakingPanel = true;
    QString problem;
    try {
        addPanel(plugin, like);
    } catch (const std::exception& error) {
        problem = QString::fromUtf8(error.what());
    } catch (...) {
        problem = tr("The error does not describe itself.");
    }
    fIsMakingPanel = false;
    return problem.isEmpty()
               ? QString()
               : tr("The panel \"%1\" cannot be opened.\n\n%2").arg(plugin->name, problem);
}

void MainWindow::arrange(const WindowContent& content)
{
    setDocks(content.look.docks); // each that came later has moved those before it
    // As soon as the window has given them their sizes.
    for (PanelDock* dock : fDocks->docks())
        QTimer::singleShot(0, dock, &PanelDock::arrangePanel);
}

void MainWindow::addPanel(PanelPlugin* plugin, const PanelContent& like)
{
    auto dock = std::make_unique<PanelDock>(*plugin, this);
    const MadePanel made =
        makePanel(*plugin, dock->holder(), fSettings, *fBroker, fContext.imageDir);
    if (!made.panel)
        return;
    dock->setPanel(made.panel);
    dock->setArrangement(like.arrangement);
    fDocks->add(dock.get(), like.dock);
    // A panel without a link of its own has nothing but the window's.
    tellWhenLost(dock.release(), made.broker ? made.broker : fBroker);
}

void MainWindow::tellWhenLost(PanelDock* dock, const boost::shared_ptr<ZoBroker>& broker)
{
    const int number = fMonitor.watch(broker, ConnectionMonitor::User::Panel);
    connect(&fMonitor, &ConnectionMonitor::lost, dock, [dock, number](int lost) {
        if (lost == number)
            dock->tellDisconnected();
    });
    const auto show = [this, dock, number] {
        dock->showState(fMonitor.stateOf(number), fSettings.robotText());
    };
    connect(&fMonitor, &ConnectionMonitor::changed, dock, show);
    show();
    connect(dock->panel(), &QObject::destroyed, &fMonitor,
            [this, number] { fMonitor.stopWatching(number); });
    // The link may have been lost while the panel's start-up dialog was open.
    if (fMonitor.isLost(number))
        dock->tellDisconnected();
}

PanelDock* MainWindow::frontDock() const
{
    return fDocks->front();
}

void MainWindow::xOnChanged()
{
    fBar->showState(fMonitor.state());
    fOutageBar->showState(fMonitor.state());
    const QString before = fTitlePrefix;
    xShowTitle();
    xUpdateActions();
    if (fTitlePrefix != before && !fTitlePrefix.isEmpty())
        QApplication::alert(this);
}

/// Whoever sets the title: what the connection has to say stands before it.
void MainWindow::xShowTitle()
{
    const QString last = std::exchange(fTitlePrefix, connectionTitlePrefix(fMonitor.state()));
    const QString title = windowTitle();
    const QString wanted = fTitlePrefix + (title.startsWith(last) ? title.mid(last.size()) : title);
    if (wanted != title) // this is called again by what it does
        setWindowTitle(wanted);
}

void MainWindow::xChooseLossLimit()
{
    askLossLimit(this, fMonitor.limit(),
                 [this](std::chrono::seconds limit) { emit lossLimitChosen(limit); });
}

void MainWindow::xOnDocksChanged()
{
    const PanelDock* const front = frontDock();
    fStartPage->setVisible(!front);
    const QString title = front ? front->holder()->windowTitle() : QString();
    const QString shown = title.isEmpty() ? QApplication::applicationName() : title;
    setWindowTitle(fSettings.prefix.isEmpty() ? shown : tr("%1 (%2)").arg(shown, fSettings.prefix));
    xUpdateActions();
}

void MainWindow::xUpdateActions()
{
    fFileMenu->showState(fMonitor.state());
    for (const auto& plugin : fContext.plugins.plugins()) {
        const bool isPossible = fMonitor.state().connected || !plugin->panels->requiresConnection();
        fPanelMenu->setPossible(*plugin, isPossible);
        fStartPage->setPossible(*plugin, isPossible);
    }
}

void MainWindow::xBringIntoSight()
{
    bringIntoSight(*this);
    for (PanelDock* dock : fDocks->docks())
        if (dock->isFloating())
            bringIntoSight(*dock);
}

void MainWindow::xClosePanel()
{
    if (PanelDock* dock = frontDock())
        dock->close();
    else
        close();
}

void MainWindow::xOnFailed(const QString& problem)
{
    fContext.errors.report(this, problem);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (!fIsClosed && !fRecordings->mayClose()) {
        event->ignore();
        return;
    }
    if (!fIsClosed)
        saveLook();
    fIsClosed = true;
    for (PanelDock* dock : fDocks->docks())
        if (dock->isFloating())
            dock->hide(); // it is a window of its own, and would stay
    event->accept();
    rejectDialogs();
    emit closed();
}

int MainWindow::recordings() const
{
    return fRecordings->count();
}

void MainWindow::endRecordingsAndClose()
{
    fRecordings->endAndClose();
}

void MainWindow::endRecordings()
{
    fRecordings->endUnasked();
}

bool MainWindow::isIdle()
{
    rejectDialogs();
    return !fIsMakingPanel && QThread::currentThread()->loopLevel() <= 1;
}

/// A dialog that a panel runs lives on the stack of a nested event loop. It must end by itself,
/// before this window, its parent, is deleted.
void MainWindow::rejectDialogs()
{
    for (QDialog* dialog : findChildren<QDialog*>()) {
        if (dialog->isVisible())
            dialog->reject();
    }
}
