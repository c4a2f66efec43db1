// SPDX-License-Identifier: MIT
#include "windows/main_window.h"

#include "connection/connection_bar.h"
#include "dialogs/error_reporter.h"
#include "dialogs/plugin_failures_dialog.h"
#include "plugins/panel_maker.h"
#include "plugins/plugin_loader.h"
#include "windows/panel_area.h"
#include "windows/picture.h"

#include <tarvek/widget_interface.h>

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QStatusBar>
#include <QThread>

MainWindow::MainWindow(const WindowContext& context, const ConnectionSettings& settings,
                       const boost::shared_ptr<ZoBroker>& broker)
    : fContext(context),
      fSettings(settings),
      fArea(new PanelArea(context.plugins, this)),
      fBar(new ConnectionBar(settings.addressText(), this))
{
    setWindowTitle(QApplication::applicationName());
    // Wide enough for all columns of a table beside a plot, where the screen is.
    resize(QSize(1280, 760).boundedTo(screen()->availableSize()));
    setCentralWidget(fArea);
    connect(fArea, &PanelArea::chosen, this, &MainWindow::openPanel);
    connect(fArea, &PanelArea::currentChanged, this, &MainWindow::xUpdateActions);
    setUpFileMenu();
    setUpPanelMenu();
    setUpHelpMenu();
    setUpStatus(broker);
    xUpdateActions();
}

MainWindow::~MainWindow() = default;

void MainWindow::setUpFileMenu()
{
    QMenu* menu = menuBar()->addMenu(tr("&File"));
    menu->addAction(tr("&New connection..."), this, &MainWindow::newConnectionRequested,
                    QKeySequence(tr("Ctrl+N")));
    fSaveAction = menu->addAction(tr("&Save picture..."), this, &MainWindow::xSavePicture,
                                  QKeySequence(tr("Ctrl+S")));
    menu->addSeparator();
    menu->addAction(tr("&Close window"), this, &MainWindow::close, QKeySequence(tr("Ctrl+W")));
    menu->addAction(tr("&Quit"), this, &MainWindow::quitRequested, QKeySequence(tr("Ctrl+Q")));
}

void MainWindow::setUpPanelMenu()
{
    QMenu* menu = menuBar()->addMenu(tr("&Panels"));
    for (const auto& plugin : fContext.plugins.plugins()) {
        QAction* action = menu->addAction(plugin->name);
        action->setToolTip(plugin->file);
        connect(action, &QAction::triggered, this,
                [this, chosen = plugin.get()] { openPanel(chosen); });
        fPanelActions += action;
    }
    if (fPanelActions.isEmpty())
        menu->addAction(tr("(none found)"))->setEnabled(false);
}

void MainWindow::setUpHelpMenu()
{
    QMenu* menu = menuBar()->addMenu(tr("&Help"));
    menu->addAction(tr("&Plug-ins that failed (%1)...").arg(fContext.plugins.failures().size()),
                    this, &MainWindow::xShowFailures);
    menu->addAction(tr("&About"), this, &MainWindow::xShowAbout);
}

void MainWindow::setUpStatus(const boost::shared_ptr<ZoBroker>& broker)
{
    statusBar()->addPermanentWidget(fBar, 1);
    connect(&fContext.errors, &ErrorReporter::noted, fBar, &ConnectionBar::note);
    connect(fBar, &ConnectionBar::connectAgainRequested, this, &MainWindow::connectAgainRequested);
    connect(&fMonitor, &ConnectionMonitor::changed, this, &MainWindow::xOnChanged);
    connect(&fMonitor, &ConnectionMonitor::lost, this, &MainWindow::xOnLost);
    connect(&fMonitor, &ConnectionMonitor::measured, fBar, &ConnectionBar::showTraffic);
    fMonitor.watch(broker);
}

void MainWindow::reconnect(const ConnectionSettings& settings)
{
    fSettings = settings;
    fMonitor.reconnect(settings);
}

void MainWindow::openPanel(PanelPlugin* plugin)
{
    // Its start-up dialog keeps the user from choosing another; this is for whoever calls.
    if (fIsMakingPanel)
        return;
    fIsMakingPanel = true;
    QString problem;
    try {
        addPanel(plugin);
    } catch (const std::exception& error) {
        problem = QString::fromUtf8(error.what());
    } catch (...) {
        problem = tr("The error does not describe itself.");
    }
    fIsMakingPanel = false;
    if (!problem.isEmpty() && !fIsClosed)
        fContext.errors.report(
            this, tr("The panel \"%1\" cannot be opened.\n\n%2").arg(plugin->name, problem));
}

void MainWindow::addPanel(PanelPlugin* plugin)
{
    const MadePanel made = makePanel(*plugin, this, fSettings, fContext.imageDir);
    if (!made.panel)
        return;
    if (made.broker) {
        const int link = fMonitor.watch(made.broker);
        connect(made.panel, &QObject::destroyed, &fMonitor,
                [this, link] { fMonitor.stopWatching(link); });
    }
    fArea->add(made.panel, plugin);
    // The link may have been lost while the panel's start-up dialog was open.
    if (!fMonitor.state().connected)
        PanelArea::tellDisconnected(made.panel, plugin);
}

void MainWindow::xOnChanged()
{
    fBar->showState(fMonitor.state());
    xUpdateActions();
}

void MainWindow::xOnLost()
{
    fArea->tellDisconnected();
}

void MainWindow::xUpdateActions()
{
    fSaveAction->setEnabled(fArea->current() != nullptr);
    for (int i = 0; i < fPanelActions.size(); ++i) {
        const WidgetInterface& panels = *fContext.plugins.plugins()[static_cast<size_t>(i)]->panels;
        fPanelActions.at(i)->setEnabled(fMonitor.state().connected || !panels.requiresConnection());
    }
}

void MainWindow::xSavePicture()
{
    // Taken before the file dialog opens: the picture shows what the user saw when they chose it.
    TarvekWidget* panel = fArea->current();
    if (!panel)
        return;
    const QPixmap picture = panel->grab();
    const QString file = pictureFileName(QFileDialog::getSaveFileName(
        this, tr("Save picture"), QString(), tr("PNG picture (*.png)")));
    if (file.isEmpty() || fIsClosed)
        return;
    const QString problem = savePicture(picture, file);
    if (problem.isEmpty())
        fBar->note(tr("Saved the picture %1").arg(file));
    else
        fContext.errors.report(this, problem);
}

void MainWindow::xShowFailures()
{
    auto* dialog = new PluginFailuresDialog(fContext.plugins, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void MainWindow::xShowAbout()
{
    auto* box = new QMessageBox(
        QMessageBox::Information, tr("About"),
        tr("%1 %2\n\nShows tool panels for robots on the network.")
            .arg(QApplication::applicationName(), QApplication::applicationVersion()),
        QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    fIsClosed = true;
    event->accept();
    rejectDialogs();
    emit closed();
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
