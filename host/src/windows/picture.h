// SPDX-License-Identifier: MIT
#pragma once

#include <QPixmap>
#include <QString>

/// `chosen` with ".png" behind it unless it ends so; empty stays empty.
QString pictureFileName(const QString& chosen);

/// Writes `picture` as PNG. Returns what went wrong, empty for nothing; a file that was there
/// before stays whole then.
QString savePicture(const QPixmap& picture, const QString& file);
