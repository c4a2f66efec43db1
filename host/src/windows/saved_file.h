// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

class QWidget;

/// What a command that saves something asks for.
struct SaveQuestion
{
    QString caption;
    QString name;        ///< suggested, without suffix; may have any characters
    QStringList filters; ///< as file dialogs take them; the first suffix of each is its own
    QString purpose;     ///< by which the folder chosen last is remembered
    QString folder;      ///< where no folder was chosen yet
};

/// Asks for the file to save in, and before one is replaced. Empty when the user changed their
/// mind, or closed the window meanwhile.
QString askWhereToSave(QWidget* window, const SaveQuestion& question);

/// Writes `bytes`. Returns what went wrong, empty for nothing; a file that was there before stays
/// whole then.
QString saveFile(const QString& file, const QByteArray& bytes);

/// `text` without what has a meaning in the names of files, here or elsewhere.
QString harmlessName(const QString& text);
