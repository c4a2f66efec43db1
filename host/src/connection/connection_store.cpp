// SPDX-License-Identifier: MIT
#include "connection/connection_store.h"

#include "connection/ssh_relay.h"

#include <kit/option_words.h>

#include <zo/error.h>

#include <QCoreApplication>
#include <QDir>
#include <QSettings>

#include <algorithm>

namespace {

/// Relative paths mean another file at each start.
QString absolutePath(const QVariant& value)
{
    const QString path = value.toString();
    return QDir::isAbsolutePath(path) ? QDir::cleanPath(path) : QString();
}

constexpr int longestAddresses = ZoAddress::fMostAddresses * 300; ///< characters

/// Throws ZoError when there are too many, or none.
void readAddresses(const QVariant& value, ConnectionSettings& settings)
{
    const QString text = value.toStringList().join(','); // which a file may hold without quotes
    if (text.size() > longestAddresses)
        throw ZoError(QCoreApplication::translate("ConnectionStore",
                                                  "the robot's addresses are too long a text")
                          .toStdString());
    settings.setAddresses(ZoAddress::listFromText(text.toStdString()));
}

} // namespace

QVariantMap connectionValues(const ConnectionSettings& settings)
{
    return {{"address", settings.addressesText()},
            {"sentinel", QString::fromStdString(settings.other.sentinel)},
            {"replica", settings.other.replica},
            {"prefix", settings.prefix},
            {"user", settings.user},
            {"keepsPassword", settings.keepsPassword},
            {"tls", settings.tls},
            {"caFile", settings.caFile},
            {"certFile", settings.certFile},
            {"keyFile", settings.keyFile},
            {"jumpHost", settings.jumpHost},
            {"timeout", settings.timeout}};
}

QStringList connectionFileKeys()
{
    return {"caFile", "certFile", "keyFile"};
}

ConnectionSettings connectionFrom(const QVariantMap& values)
{
    ConnectionSettings settings;
    readAddresses(values["address"], settings);
    settings.other.sentinel = values["sentinel"].toString().toStdString();
    settings.other.replica = values["replica"].toBool();
    settings.prefix = values["prefix"].toString();
    ZoBrokerOptions::checkPrefix(settings.prefix.toStdString());
    settings.user = values["user"].toString();
    settings.keepsPassword = values["keepsPassword"].toBool();
    settings.tls = values["tls"].toBool();
    settings.caFile = absolutePath(values["caFile"]);
    settings.certFile = absolutePath(values["certFile"]);
    settings.keyFile = absolutePath(values["keyFile"]);
    settings.jumpHost = values["jumpHost"].toString();
    if (!settings.jumpHost.isEmpty())
        checkJumpHost(settings.jumpHost.toStdString()); // without it, this would be another robot
    checkNodes(settings);
    settings.timeout = std::clamp(values["timeout"].toInt(), 0, kit::longestTime);
    return settings;
}

void writeConnection(QSettings& store, const ConnectionSettings& settings)
{
    const QVariantMap values = connectionValues(settings);
    for (auto value = values.begin(); value != values.end(); ++value)
        store.setValue(value.key(), value.value());
}

ConnectionSettings readConnection(const QSettings& store)
{
    QVariantMap values;
    for (const QString& key : connectionValues({}).keys())
        values[key] = store.value(key);
    return connectionFrom(values);
}
