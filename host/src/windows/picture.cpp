// SPDX-License-Identifier: MIT
#include "windows/picture.h"

#include <QCoreApplication>
#include <QSaveFile>

QString pictureFileName(const QString& chosen)
{
    if (chosen.isEmpty() || chosen.endsWith(".png", Qt::CaseInsensitive))
        return chosen;
    return chosen + ".png";
}

QString savePicture(const QPixmap& picture, const QString& file)
{
    QSaveFile output(file);
    if (output.open(QIODevice::WriteOnly) && picture.save(&output, "PNG") && output.commit())
        return {};
    return QCoreApplication::translate("Picture", "The picture cannot be saved as %1: %2")
        .arg(file, output.errorString());
}
