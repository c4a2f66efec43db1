// SPDX-License-Identifier: MIT
#include "connection/connection_settings.h"

ZoBrokerOptions ConnectionSettings::brokerOptions() const
{
    ZoBrokerOptions options;
    options.user = user.toStdString();
    options.password = password.toStdString();
    options.tls = tls;
    options.tlsCaFile = caFile.toLocal8Bit().toStdString();
    return options;
}
