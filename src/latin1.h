// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <string>

/// Robot memory, configuration files and the host's folder of images are bytes to the panel; it
/// shows each byte as the Latin-1 character it is, and turns it back into the same byte. Other
/// characters, which a user may type into an alias, become a question mark each.
inline QString fromLatin1(const std::string& bytes)
{
    return QString::fromLatin1(bytes.data(), static_cast<int>(bytes.size()));
}

inline std::string toLatin1(const QString& text)
{
    return text.toLatin1().toStdString();
}
