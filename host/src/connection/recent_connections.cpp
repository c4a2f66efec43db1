// SPDX-License-Identifier: MIT
#include "connection/recent_connections.h"

#include "connection/connection_store.h"

#include <zo/error.h>

#include <QSettings>

#include <algorithm>
#include <optional>

namespace {

constexpr char arrayName[] = "recentConnections";

constexpr int mostEntries = 100; ///< those that another version understands among them

/// All that the file has, by the keys of each entry.
QList<QVariantMap> storedEntries()
{
    QSettings store;
    QList<QVariantMap> entries;
    const int size = std::min(store.beginReadArray(arrayName), mostEntries);
    for (int i = 0; i < size; ++i) {
        store.setArrayIndex(i);
        QVariantMap entry;
        for (const QString& key : store.allKeys())
            entry[key] = store.value(key);
        entries += entry;
    }
    store.endArray();
    return entries;
}

void save(const QList<QVariantMap>& entries)
{
    QSettings store;
    store.remove(arrayName);
    store.beginWriteArray(arrayName, static_cast<int>(entries.size()));
    for (int i = 0; i < entries.size(); ++i) {
        store.setArrayIndex(i);
        for (auto value = entries.at(i).begin(); value != entries.at(i).end(); ++value)
            store.setValue(value.key(), value.value());
    }
    store.endArray();
}

/// Nothing for what somebody wrote who knows more, or made a mistake: it is of no use here.
std::optional<ConnectionSettings> settingsOf(const QVariantMap& entry)
{
    try {
        return connectionFrom(entry);
    } catch (const ZoError&) {
        return std::nullopt;
    }
}

} // namespace

QList<ConnectionSettings> recentConnections()
{
    QList<ConnectionSettings> list;
    for (const QVariantMap& entry : storedEntries()) {
        const auto settings = settingsOf(entry);
        if (settings && list.size() < mostRecentConnections)
            list += *settings;
    }
    return list;
}

void rememberConnection(const ConnectionSettings& settings)
{
    QList<QVariantMap> entries{{}};
    int usable = 1;
    for (const QVariantMap& entry : storedEntries()) {
        const auto other = settingsOf(entry);
        if (other && isSameRobot(*other, settings))
            entries[0] = entry; // with what only another version knows of it
        else if (!other || usable++ < mostRecentConnections)
            entries += entry;
    }
    const QVariantMap values = connectionValues(settings);
    for (auto value = values.begin(); value != values.end(); ++value)
        entries[0][value.key()] = value.value();
    save(entries.mid(0, mostEntries));
}
