// SPDX-License-Identifier: MIT
#pragma once

#include "workspace/workspace.h"

#include <zo/broker.h>

#include <QObject>
#include <QPointer>
#include <QStringList>

#include <deque>
#include <functional>
#include <memory>
#include <vector>

class KeptPasswords;
class MainWindow;
class PluginLoader;
class QMessageBox;
class QProgressDialog;
class RobotOpening;

/// Opens all of a workspace: connects to its robots at the same time, shows their windows, and then
/// their panels one after the other, as each may ask for something. At the end one message says
/// what could not be opened, and offers to try the robots among that again.
class WorkspaceOpening : public QObject
{
    Q_OBJECT

public:
    /// What it needs of the program; outlives it.
    struct Program
    {
        const PluginLoader& plugins;
        KeptPasswords& passwords;
        /// Shows a window of that robot.
        std::function<MainWindow*(const WorkspaceWindow& window,
                                  const boost::shared_ptr<ZoBroker>& broker)>
            openWindow;
    };

    /// `name` is the workspace's.
    WorkspaceOpening(Workspace workspace, QString name, const Program& program, QObject* parent);
    ~WorkspaceOpening() override;

    /// To be called once.
    void start();

    /// What its robots that are not reached, or not yet, would have had.
    QList<WorkspaceWindow> unopened() const;

signals:
    /// It has done what it can, and the user has read what it could not.
    void ended();

private slots:
    void xOnRobot();
    void xOpenNextPanel();
    void xCancel();
    void xTryAgain();

private:
    struct Robot
    {
        WorkspaceWindow window;
        std::unique_ptr<RobotOpening> opening;
        bool isOpen; ///< it is being tried
    };
    /// A panel to come; the last step of a window has none, and arranges those that came.
    struct Step
    {
        QPointer<MainWindow> window;
        WindowContent content;
        int panel; ///< of the content's
    };

    /// A panel without a plug-in here.
    struct MissingPanel
    {
        QPointer<MainWindow> window;
        PanelContent panel;
    };

    void connectToRobots();
    void showProgress();
    void openWindows();
    void take(const Step& step);
    void openPanel(const Step& step);
    void finish();
    QMessageBox* openMessage();
    static void offerToDrop(const QList<MissingPanel>& missing, QMessageBox& box);

    Workspace fWorkspace;
    const QString fName;
    const Program fProgram;
    std::vector<Robot> fRobots;
    QPointer<QProgressDialog> fProgress;
    std::deque<Step> fSteps;
    QPointer<MainWindow> fLastWindow;
    QList<MissingPanel> fMissing; ///< that the user does not know of
    QStringList fProblems;
    QPointer<QMessageBox> fMessage;
};
