// SPDX-License-Identifier: MIT
#include "workspace/workspace_opening.h"

#include "plugins/plugin_loader.h"
#include "windows/main_window.h"
#include "workspace/robot_opening.h"

#include <QCheckBox>
#include <QLabel>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace {

/// Robots that answer sooner need no dialog to tell what is going on.
constexpr int quietConnecting = 300; ///< ms

constexpr int mostTold = 10;      ///< problems that a message shows
constexpr int mostKept = 200;     ///< with those in its details
constexpr int longestTold = 1000; ///< characters of one

/// With the robot's address, which most of them have already.
QString problemOf(const RobotOpening& opening)
{
    const QString& problem = opening.problem();
    return problem.contains(opening.settings().addressText())
               ? problem
               : WorkspaceOpening::tr("Robot %1: %2").arg(opening.settings().wayText(), problem);
}

/// Those that do not fit the screen are to be read in the details.
void tell(QMessageBox& box, const QStringList& problems)
{
    QStringList told;
    for (const QString& problem : problems.mid(0, mostKept))
        told += problem.size() > longestTold ? problem.left(longestTold) + "..." : problem;
    box.setText(WorkspaceOpening::tr("Not all of the workspace could be opened:\n\n%1")
                    .arg(QStringList(told.mid(0, mostTold)).join("\n\n")));
    const auto others = static_cast<int>(problems.size()) - mostTold;
    if (others <= 0)
        return;
    box.setInformativeText(WorkspaceOpening::tr("%n more in the details.", nullptr, others));
    if (problems.size() > mostKept)
        told += "...";
    box.setDetailedText(QStringList(told.mid(mostTold)).join("\n\n"));
}

} // namespace

WorkspaceOpening::WorkspaceOpening(Workspace workspace, QString name, const Program& program,
                                   QObject* parent)
    : QObject(parent), fWorkspace(std::move(workspace)), fName(std::move(name)), fProgram(program)
{
}

WorkspaceOpening::~WorkspaceOpening()
{
    delete fProgress;
    if (fMessage)
        fMessage->disconnect(this);
    delete fMessage;
}

void WorkspaceOpening::start()
{
    fProblems = std::exchange(fWorkspace.problems, {});
    connectToRobots();
}

QList<WorkspaceWindow> WorkspaceOpening::unopened() const
{
    QList<WorkspaceWindow> windows = fWorkspace.windows;
    for (const Robot& robot : fRobots)
        windows += robot.window;
    return windows;
}

void WorkspaceOpening::connectToRobots()
{
    fRobots.clear();
    for (const WorkspaceWindow& window : std::as_const(fWorkspace.windows)) {
        auto opening = std::make_unique<RobotOpening>(window.robot, fProgram.passwords, nullptr);
        connect(opening.get(), &RobotOpening::ended, this, &WorkspaceOpening::xOnRobot);
        fRobots.push_back({window, std::move(opening), true});
    }
    fWorkspace.windows.clear();
    if (fRobots.empty()) {
        QTimer::singleShot(0, this, &WorkspaceOpening::xOpenNextPanel);
        return;
    }
    showProgress();
    for (const Robot& robot : fRobots)
        robot.opening->start();
}

void WorkspaceOpening::showProgress()
{
    fProgress = new QProgressDialog(QString(), tr("Cancel"), 0, static_cast<int>(fRobots.size()));
    fProgress->setObjectName("workspaceProgress");
    fProgress->setWindowTitle(fName);
    fProgress->setMinimumDuration(quietConnecting);
    fProgress->setAutoClose(false);
    fProgress->setAutoReset(false);
    connect(fProgress, &QProgressDialog::canceled, this, &WorkspaceOpening::xCancel);
    QStringList addresses;
    for (const Robot& robot : fRobots)
        addresses += robot.window.robot.wayText();
    constexpr int mostShown = 10;
    if (addresses.size() > mostShown)
        addresses = addresses.mid(0, mostShown) + QStringList("...");
    auto* label = new QLabel(tr("Connecting to\n%1").arg(addresses.join('\n')));
    label->setTextFormat(Qt::PlainText);
    fProgress->setLabel(label); // which takes it over
    fProgress->setValue(0);
}

void WorkspaceOpening::xOnRobot()
{
    int ended = 0;
    for (Robot& robot : fRobots) {
        if (robot.opening.get() == sender())
            robot.isOpen = false;
        ended += robot.isOpen ? 0 : 1;
    }
    fProgress->setValue(ended);
    if (ended == static_cast<int>(fRobots.size()))
        // What is at work now is one of those to be deleted.
        QMetaObject::invokeMethod(this, &WorkspaceOpening::openWindows, Qt::QueuedConnection);
}

void WorkspaceOpening::xCancel()
{
    for (Robot& robot : fRobots) {
        if (std::exchange(robot.isOpen, false))
            fProblems += tr("%1: not tried to the end").arg(robot.window.robot.wayText());
    }
    QMetaObject::invokeMethod(this, &WorkspaceOpening::openWindows, Qt::QueuedConnection);
}

void WorkspaceOpening::openWindows()
{
    if (fRobots.empty()) // cancelled when all of them had answered
        return;
    fProgress->deleteLater();
    const std::vector<Robot> robots = std::exchange(fRobots, {});
    for (const Robot& robot : robots) {
        const RobotOpening& opening = *robot.opening;
        if (!opening.broker()) {
            fWorkspace.windows += robot.window;
            if (!opening.problem().isEmpty())
                fProblems += problemOf(opening);
            continue;
        }
        WorkspaceWindow window = robot.window;
        window.robot = opening.settings();
        fLastWindow = fProgram.openWindow(window, opening.broker());
        fLastWindow->keepPlaces(window.content.panels);
        for (int i = 0; i <= window.content.panels.size(); ++i)
            fSteps.push_back({fLastWindow, window.content, i});
    }
    QTimer::singleShot(0, this, &WorkspaceOpening::xOpenNextPanel);
}

void WorkspaceOpening::xOpenNextPanel()
{
    if (fSteps.empty()) {
        finish();
        return;
    }
    const Step step = std::move(fSteps.front());
    fSteps.pop_front();
    const QPointer<WorkspaceOpening> self(this);
    if (step.window && step.window->isVisible())
        take(step); // which may take the user's time, and end the program meanwhile
    if (self)
        QTimer::singleShot(0, this, &WorkspaceOpening::xOpenNextPanel);
}

void WorkspaceOpening::take(const Step& step)
{
    if (step.panel == step.content.panels.size())
        step.window->arrange(step.content);
    else
        openPanel(step);
}

void WorkspaceOpening::openPanel(const Step& step)
{
    const PanelContent& panel = step.content.panels.at(step.panel);
    PanelPlugin* const plugin = fProgram.plugins.find(panel.plugin);
    if (!plugin) {
        fMissing += MissingPanel{step.window, panel};
        fProblems += tr("Panel \"%1\" of %2: there is no such plug-in here. \"Help\", \"Plug-ins "
                        "that failed...\" may say why.")
                         .arg(panel.plugin, step.window->settings().wayText());
        return;
    }
    const QPointer<WorkspaceOpening> self(this);
    const QString problem = step.window->openPanelLike(plugin, panel);
    MainWindow* const window = step.window; // which may have gone meanwhile
    if (!self || !window || !window->isVisible())
        return;
    if (problem.isEmpty())
        window->dropPlace(panel); // also when the user has called it off
    else
        fProblems += QString(problem).replace("\n\n", " ");
}

void WorkspaceOpening::finish()
{
    if (fProblems.isEmpty()) {
        emit ended();
        return;
    }
    fMessage = openMessage();
}

QMessageBox* WorkspaceOpening::openMessage()
{
    auto* box =
        new QMessageBox(QMessageBox::Warning, fName, QString(), QMessageBox::Close, fLastWindow);
    tell(*box, std::exchange(fProblems, {}));
    box->setObjectName("workspaceProblems");
    box->setTextFormat(Qt::PlainText); // some of it is the file's and the robots'
    box->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    box->setAttribute(Qt::WA_DeleteOnClose);
    if (!fMissing.isEmpty())
        offerToDrop(std::exchange(fMissing, {}), *box);
    if (!fWorkspace.windows.isEmpty()) {
        QPushButton* again = box->addButton(tr("Try &again"), QMessageBox::AcceptRole);
        again->setObjectName("tryAgain");
        connect(again, &QPushButton::clicked, this, &WorkspaceOpening::xTryAgain);
    }
    // However it ends: its window may go.
    connect(box, &QObject::destroyed, this, &WorkspaceOpening::ended);
    box->open();
    return box;
}

/// A plug-in may be missing for today, or for ever: only the user knows.
void WorkspaceOpening::offerToDrop(const QList<MissingPanel>& missing, QMessageBox& box)
{
    auto* drop = new QCheckBox(tr("&Leave out panels without a plug-in when the workspace is saved "
                                  "again"));
    drop->setObjectName("dropMissing");
    box.setCheckBox(drop); // which takes it over
    connect(&box, &QDialog::finished, &box, [drop, missing] {
        for (const MissingPanel& one : missing) {
            if (drop->isChecked() && one.window)
                one.window->dropPlace(one.panel);
        }
    });
}

/// The robots that could not be reached.
void WorkspaceOpening::xTryAgain()
{
    fMessage->disconnect(this);
    connectToRobots();
}
