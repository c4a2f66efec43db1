// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QPixmap>
#include <QString>

class QWidget;

/// What a widget looks like at one moment.
struct Picture
{
    QPixmap pixels;
    QByteArray pdf; ///< the same, sharp at any size
};

Picture pictureOf(QWidget& widget);

/// Writes `picture` in the format that the file's name ends in. Returns what went wrong, empty for
/// nothing; a file that was there before stays whole then.
QString savePicture(const Picture& picture, const QString& file);
