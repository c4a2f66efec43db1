// SPDX-License-Identifier: MIT
#include "windows/saved_file.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSettings>

namespace {

constexpr int longestName = 100; ///< characters

QString folderOf(const SaveQuestion& question)
{
    QString last = QSettings().value("folders/" + question.purpose).toString();
    if (!last.isEmpty() && QDir(last).exists())
        return last;
    return QDir(question.folder).exists() ? question.folder : QDir::homePath();
}

/// "png" of "Picture (*.png)".
QString suffixOf(const QString& filter)
{
    return QRegularExpression(R"(\*\.(\w+))").match(filter).captured(1);
}

} // namespace

QString harmlessName(const QString& text)
{
    QString name = text.simplified();
    name.replace(QRegularExpression(R"([\\/:*?"<>|\x00-\x1f\x7f])"), "-");
    while (name.startsWith('.') || name.startsWith('-'))
        name.remove(0, 1);
    return name.left(longestName).trimmed();
}

QString askWhereToSave(QWidget* window, const SaveQuestion& question)
{
    QFileDialog dialog(window, question.caption, folderOf(question));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters(question.filters);
    dialog.setDefaultSuffix(suffixOf(question.filters.value(0)));
    dialog.selectFile(harmlessName(question.name) + '.' + dialog.defaultSuffix());
    QObject::connect(&dialog, &QFileDialog::filterSelected, [&dialog](const QString& filter) {
        const QFileInfo chosen(dialog.selectedFiles().value(0));
        dialog.setDefaultSuffix(suffixOf(filter));
        if (!chosen.isDir())
            dialog.selectFile(chosen.completeBaseName() + '.' + suffixOf(filter));
    });
    if (dialog.exec() != QDialog::Accepted || !window->isVisible())
        return {};
    QString file = dialog.selectedFiles().value(0);
    QSettings().setValue("folders/" + question.purpose, QFileInfo(file).absolutePath());
    return file;
}

QString saveFile(const QString& file, const QByteArray& bytes)
{
    QSaveFile output(file);
    // It tells nobody that the rest of its buffer found no room, but for who flushes it.
    if (output.open(QIODevice::WriteOnly) && output.write(bytes) == bytes.size() &&
        output.flush() && output.commit())
        return {};
    return QCoreApplication::translate("SavedFile", "%1 cannot be saved: %2")
        .arg(file, output.errorString());
}
