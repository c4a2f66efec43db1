// SPDX-License-Identifier: MIT
#include "dialogs/offered_file.h"

#include <QApplication>
#include <QEvent>
#include <QFileDialog>

OfferedFile::OfferedFile(const QString& file) : fFile(file)
{
    if (!fFile.isEmpty())
        qApp->installEventFilter(this);
}

bool OfferedFile::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::Show)
        return false;
    auto* dialog = qobject_cast<QFileDialog*>(watched);
    if (dialog && dialog->acceptMode() == QFileDialog::AcceptOpen) {
        qApp->removeEventFilter(this);
        dialog->selectFile(fFile);
    }
    return false;
}
