// SPDX-License-Identifier: MIT
#pragma once

#include "workspace/workspace_opening.h"

#include <QObject>
#include <QPointer>
#include <QString>

class ErrorReporter;

/// Saves and opens workspaces for the user.
class Workspaces : public QObject
{
    Q_OBJECT

public:
    using Program = WorkspaceOpening::Program;

    Workspaces(const Program& program, ErrorReporter& errors, QObject* parent);
    ~Workspaces() override;

    /// Asks, over `asker`, where to save those windows, and does.
    void save(MainWindow* asker, const QList<MainWindow*>& windows);
    /// Opens that workspace, over `asker`, which may be null; one that is being opened is left as
    /// it is. Without a file asks for one.
    void open(const QString& file, QWidget* asker);

    /// What is to be kept of those windows, and of what could not be opened: a robot that is away
    /// today belongs to the workspace as before.
    Workspace contentOf(const QList<MainWindow*>& windows) const;

    bool isOpening() const { return !fOpening.isNull(); }
    void endOpening();

signals:
    /// Nothing is being opened any more.
    void ended();

private:
    void begin(const QString& file, const Workspace& workspace);

    const Program fProgram;
    ErrorReporter& fErrors;
    QPointer<WorkspaceOpening> fOpening;
    QString fName; ///< of the one opened or saved last
    QList<WorkspaceWindow> fUnopened;
};
