// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

/// What the names of configuration files end in, behind a dot.
constexpr const char* configFileExtension = "xml";

/// The one filter of a dialog that asks for such a file: a text to translate as a whole.
inline QByteArray configFileFilter()
{
    return QByteArray("Xml file (*.") + configFileExtension + ")";
}

/// `path` with the extension, which is appended where it is missing.
inline QString withConfigFileExtension(const QString& path)
{
    const QString ending = QString(".") + configFileExtension;
    return path.endsWith(ending) ? path : path + ending;
}
