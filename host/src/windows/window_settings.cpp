// SPDX-License-Identifier: MIT
#include "windows/window_settings.h"

#include "windows/sealed_bytes.h"

#include <QSettings>
#include <QUrl>

namespace {

constexpr char geometryName[] = "window/geometry";
constexpr char docksName[] = "window/docks";
constexpr char titlesName[] = "window/titles";

/// A name may have slashes, which would make groups.
QString keyOf(const QString& name)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(name));
}

QString nameOf(const QString& key)
{
    return QUrl::fromPercentEncoding(key.toLatin1());
}

QString groupOf(const QString& kind)
{
    return "panels/" + keyOf(kind);
}

void saveTitles(QSettings& store, const QMap<QString, QString>& titles)
{
    store.beginGroup(titlesName);
    store.remove(QString());
    for (auto title = titles.begin(); title != titles.end(); ++title)
        store.setValue(keyOf(title.key()), title.value());
    store.endGroup();
}

QMap<QString, QString> savedTitles()
{
    QSettings store;
    store.beginGroup(titlesName);
    QMap<QString, QString> titles;
    for (const QString& key : store.childKeys())
        titles[nameOf(key)] = store.value(key).toString();
    return titles;
}

} // namespace

void saveLook(const WindowLook& look)
{
    QSettings store;
    store.setValue(geometryName, sealed(look.geometry));
    store.setValue(docksName, sealed(look.docks));
    saveTitles(store, look.titles);
}

WindowLook savedLook()
{
    const QSettings store;
    return {unsealed(store.value(geometryName).toByteArray()),
            unsealed(store.value(docksName).toByteArray()), savedTitles()};
}

void saveArrangement(const QString& kind, const PanelArrangement& arrangement)
{
    QSettings store;
    store.beginGroup(groupOf(kind));
    // The places that this version of the panel does not have stay: another one may have them.
    for (auto entry = arrangement.begin(); entry != arrangement.end(); ++entry)
        store.setValue(entry.key(), entry.value());
}

PanelArrangement savedArrangement(const QString& kind)
{
    QSettings store;
    store.beginGroup(groupOf(kind));
    PanelArrangement arrangement;
    for (const QString& place : store.childKeys())
        arrangement[place] = store.value(place).toString();
    return arrangement;
}
