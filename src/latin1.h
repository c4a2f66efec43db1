#pragma once

#include <QString>

#include <string>

/// Robot memory and configuration files hold bytes; the views show each byte as the Latin-1
/// character it is, and turn it back into the same byte.
inline QString fromLatin1(const std::string& bytes)
{
    return QString::fromLatin1(bytes.data(), static_cast<int>(bytes.size()));
}

inline std::string toLatin1(const QString& text)
{
    return text.toLatin1().toStdString();
}
