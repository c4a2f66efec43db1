// SPDX-License-Identifier: MIT
#include "workspace/workspace_file.h"

#include "windows/saved_file.h"

#include <zo/error.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

/// The context that translators find the texts in.
struct WorkspaceFile
{
    Q_DECLARE_TR_FUNCTIONS(WorkspaceFile)
};

QString sessionFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + "/sessions";
}

/// Throws ZoError without the file's name.
QByteArray contentOf(const QString& name)
{
    if (QFileInfo(name).exists() && !QFileInfo(name).isFile()) // a pipe would hold up the program
        throw ZoError(WorkspaceFile::tr("it is no file").toStdString());
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        throw ZoError(file.errorString().toStdString());
    QByteArray bytes = file.read(largestWorkspace + 1);
    if (file.error() != QFileDevice::NoError)
        throw ZoError(file.errorString().toStdString());
    if (bytes.size() > largestWorkspace)
        throw ZoError(WorkspaceFile::tr("it is larger than %1 MiB")
                          .arg(largestWorkspace >> 20)
                          .toStdString());
    return bytes;
}

} // namespace

QString sessionFile(const QString& id)
{
    return sessionFolder() + '/' + harmlessName(id) + ".tarvek";
}

bool isSessionFile(const QString& file)
{
    return QFileInfo(file).absolutePath() == sessionFolder();
}

Workspace readWorkspace(const QString& file)
{
    try {
        return workspaceFrom(contentOf(file), QFileInfo(file).absolutePath());
    } catch (const ZoError& error) {
        throw ZoError(WorkspaceFile::tr("The workspace %1 cannot be opened: %2.\n\nChoose a file "
                                        "that \"Save workspace\" wrote.")
                          .arg(file, QString::fromUtf8(error.what()))
                          .toStdString());
    }
}

QString writeWorkspace(const Workspace& workspace, const QString& file)
{
    QByteArray before;
    try {
        before = contentOf(file);
    } catch (const ZoError&) {
        // There is none yet, or the user has agreed to replace what it is.
        before.clear();
    }
    try {
        const QByteArray text = workspaceText(workspace, QFileInfo(file).absolutePath(), before);
        if (text.size() > largestWorkspace)
            throw ZoError(WorkspaceFile::tr("it would be larger than %1 MiB")
                              .arg(largestWorkspace >> 20)
                              .toStdString());
        return saveFile(file, text);
    } catch (const ZoError& error) {
        return WorkspaceFile::tr("%1 cannot be saved: %2.")
            .arg(file, QString::fromUtf8(error.what()));
    }
}
