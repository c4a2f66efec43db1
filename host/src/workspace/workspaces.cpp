// SPDX-License-Identifier: MIT
#include "workspace/workspaces.h"

#include "dialogs/error_reporter.h"
#include "windows/main_window.h"
#include "windows/recent_workspaces.h"
#include "windows/saved_file.h"
#include "workspace/workspace_file.h"

#include <zo/error.h>

#include <QFileDialog>
#include <QFileInfo>

#include <algorithm>

namespace {

constexpr char purpose[] = "workspace";

QStringList filters()
{
    return {Workspaces::tr("Workspaces (*.tarvek)")};
}

QString askWhichToOpen(QWidget* asker)
{
    const QString last = recentWorkspaces().value(0);
    return QFileDialog::getOpenFileName(
        asker, Workspaces::tr("Open workspace"), QFileInfo(last).absolutePath(),
        filters().join(QString()) + ";;" + Workspaces::tr("All files (*)"));
}

} // namespace

Workspaces::Workspaces(const Program& program, ErrorReporter& errors, QObject* parent)
    : QObject(parent), fProgram(program), fErrors(errors)
{
}

Workspaces::~Workspaces()
{
    delete fOpening;
}

Workspace Workspaces::contentOf(const QList<MainWindow*>& windows) const
{
    Workspace workspace;
    for (const MainWindow* window : windows)
        workspace.windows += WorkspaceWindow{window->settings(), window->content()};
    for (const WorkspaceWindow& unopened : fOpening ? fOpening->unopened() : fUnopened) {
        const auto isOfItsRobot = [&](const MainWindow* window) {
            return isSameRobot(window->settings(), unopened.robot);
        };
        if (std::none_of(windows.begin(), windows.end(), isOfItsRobot))
            workspace.windows += unopened;
    }
    return workspace;
}

void Workspaces::save(MainWindow* asker, const QList<MainWindow*>& windows)
{
    const QString name = fName.isEmpty() ? asker->settings().addressText() : fName;
    const QPointer<MainWindow> window(asker);
    const QString file =
        askWhereToSave(asker, {tr("Save workspace"), name, filters(), purpose, QString()});
    if (file.isEmpty() || !window)
        return;
    const QString problem = writeWorkspace(contentOf(windows), file);
    if (!problem.isEmpty()) {
        fErrors.report(window, problem);
        return;
    }
    fName = QFileInfo(file).completeBaseName();
    rememberWorkspace(QFileInfo(file).absoluteFilePath());
    fErrors.note(tr("The workspace is saved in %1").arg(file));
}

void Workspaces::open(const QString& file, QWidget* asker)
{
    if (fOpening) {
        fErrors.note(tr("A workspace is being opened already"));
        return;
    }
    const QPointer<QWidget> window(asker);
    const QString chosen = file.isEmpty() ? askWhichToOpen(asker) : file;
    if (chosen.isEmpty() || fOpening || (asker && !(window && window->isVisible())))
        return;
    try {
        begin(QFileInfo(chosen).absoluteFilePath(), readWorkspace(chosen));
    } catch (const ZoError& error) {
        fErrors.report(window, QString::fromUtf8(error.what()));
        emit ended();
    }
}

void Workspaces::begin(const QString& file, const Workspace& workspace)
{
    if (!isSessionFile(file)) {
        fName = QFileInfo(file).completeBaseName();
        rememberWorkspace(file);
    }
    fOpening = new WorkspaceOpening(workspace, QFileInfo(file).completeBaseName(), fProgram, this);
    connect(fOpening, &WorkspaceOpening::ended, this, &Workspaces::endOpening);
    fOpening->start();
}

void Workspaces::endOpening()
{
    if (!fOpening)
        return;
    fUnopened = fOpening->unopened();
    fOpening->disconnect(this);
    fOpening->deleteLater(); // it may be what has called
    fOpening = nullptr;
    emit ended();
}
