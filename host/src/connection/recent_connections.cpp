// SPDX-License-Identifier: MIT
#include "connection/recent_connections.h"

#include <zo/error.h>

#include <QSettings>

#include <algorithm>

namespace {

constexpr char arrayName[] = "recentConnections";

void save(const QList<ConnectionSettings>& list)
{
    QSettings store;
    store.remove(arrayName);
    store.beginWriteArray(arrayName, list.size());
    for (int i = 0; i < list.size(); ++i) {
        store.setArrayIndex(i);
        store.setValue("address", list.at(i).addressText());
        store.setValue("user", list.at(i).user);
        store.setValue("tls", list.at(i).tls);
        store.setValue("caFile", list.at(i).caFile);
    }
    store.endArray();
}

/// The entry that `store` stands on. Throws ZoError when its address is none.
ConnectionSettings read(const QSettings& store)
{
    ConnectionSettings settings;
    settings.address = ZoAddress::fromText(store.value("address").toString().toStdString());
    settings.user = store.value("user").toString();
    settings.tls = store.value("tls").toBool();
    settings.caFile = store.value("caFile").toString();
    return settings;
}

} // namespace

QList<ConnectionSettings> recentConnections()
{
    QSettings store;
    QList<ConnectionSettings> list;
    const int size = std::min(store.beginReadArray(arrayName), mostRecentConnections);
    for (int i = 0; i < size; ++i) {
        store.setArrayIndex(i);
        try {
            list += read(store);
        } catch (const ZoError&) {
            // Somebody edited the file: the entry is of no use, the others are.
            continue;
        }
    }
    store.endArray();
    return list;
}

void rememberConnection(const ConnectionSettings& settings)
{
    QList<ConnectionSettings> list = recentConnections();
    const auto same = [&settings](const ConnectionSettings& other) {
        return other.address == settings.address;
    };
    list.erase(std::remove_if(list.begin(), list.end(), same), list.end());
    list.prepend(settings);
    save(list.mid(0, mostRecentConnections));
}
