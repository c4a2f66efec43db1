// SPDX-License-Identifier: MIT
#include "connection/connection_settings.h"

#include <kit/password_file.h>

#include <QFile>

ConnectionSettings::ConnectionSettings(const ZoAddress& robot, const ZoBrokerOptions& options)
    : address(robot),
      user(QString::fromLocal8Bit(options.user.c_str())),
      password(options.password),
      tls(options.tls),
      caFile(QFile::decodeName(options.tlsCaFile.c_str())),
      other(options)
{
    kit::wipe(other.password);
}

ZoBrokerOptions ConnectionSettings::brokerOptions() const
{
    ZoBrokerOptions options = other;
    options.user = user.toStdString();
    options.password = password;
    options.tls = tls;
    options.tlsCaFile = QFile::encodeName(caFile).toStdString();
    options.follow = follow;
    return options;
}
