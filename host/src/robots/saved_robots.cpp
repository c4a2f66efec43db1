// SPDX-License-Identifier: MIT
#include "robots/saved_robots.h"

#include "connection/connection_store.h"

#include <zo/error.h>

#include <QSettings>
#include <QUuid>

#include <algorithm>
#include <optional>
#include <tuple>
#include <utility>

namespace {

constexpr char groupName[] = "robots";
constexpr char orderKey[] = "order";
constexpr char lastKey[] = "last";

/// A robot with the group that holds it.
struct Entry
{
    QString id;
    SavedRobot robot;
};

/// The settings, at the group of all robots.
class Store : public QSettings
{
public:
    Store() { beginGroup(groupName); }

    std::optional<Entry> read(const QString& id)
    {
        beginGroup(id);
        std::optional<Entry> entry;
        try {
            entry = Entry{id, {nameOf(value("name").toString()), readConnection(*this)}};
        } catch (const ZoError&) {
            // Somebody edited the file: this one is of no use, the others are.
        }
        endGroup();
        return entry && !entry->robot.name.isEmpty() ? entry : std::nullopt;
    }

    void write(const Entry& entry)
    {
        beginGroup(entry.id);
        setValue("name", entry.robot.name);
        writeConnection(*this, entry.robot.settings);
        endGroup();
    }

    static QString nameOf(const QString& text) { return text.simplified().left(longestRobotName); }
};

/// The groups that are there, first those that have a place in the order.
QStringList orderedIds(const Store& store)
{
    QStringList present = store.childGroups();
    QStringList ids;
    for (const QString& id : store.value(orderKey).toStringList()) {
        if (present.removeOne(id))
            ids += id;
    }
    return ids + present;
}

bool hasName(const QList<Entry>& entries, const QString& name)
{
    return std::any_of(entries.begin(), entries.end(),
                       [&name](const Entry& entry) { return entry.robot.name == name; });
}

QList<Entry> entriesOf(Store& store)
{
    QList<Entry> entries;
    for (const QString& id : orderedIds(store).mid(0, mostSavedRobots)) {
        const auto entry = store.read(id);
        if (entry && !hasName(entries, entry->robot.name))
            entries += *entry;
    }
    return entries;
}

/// The group of the robot called `name`; empty: there is none.
QString idOf(const QList<Entry>& entries, const QString& name)
{
    for (const Entry& entry : entries) {
        if (entry.robot.name == name)
            return entry.id;
    }
    return {};
}

/// Whether all but address and user is the same, too.
bool isReachedAlike(const ConnectionSettings& one, const ConnectionSettings& other)
{
    const auto way = [](const ConnectionSettings& settings) {
        return std::tie(settings.keepsPassword, settings.tls, settings.caFile, settings.certFile,
                        settings.keyFile, settings.timeout, settings.other.replica);
    };
    return way(one) == way(other);
}

void writeOrder(Store& store, const QList<Entry>& entries)
{
    QStringList ids;
    for (const Entry& entry : entries)
        ids += entry.id;
    for (const QString& id : orderedIds(store)) // what only another version understands
        if (!ids.contains(id))
            ids += id;
    store.setValue(orderKey, ids);
}

} // namespace

QList<SavedRobot> savedRobots()
{
    Store store;
    QList<SavedRobot> robots;
    for (const Entry& entry : entriesOf(store))
        robots += entry.robot;
    return robots;
}

QString saveRobot(const SavedRobot& robot)
{
    Store store;
    QList<Entry> entries = entriesOf(store);
    QString name = Store::nameOf(robot.name);
    if (name.isEmpty())
        name = robot.settings.robotText();
    QString id = idOf(entries, name);
    if (id.isEmpty()) {
        id = QUuid::createUuid().toString(QUuid::WithoutBraces);
        entries += Entry{id, {name, robot.settings}};
        writeOrder(store, entries);
    }
    store.write({id, {name, robot.settings}});
    return name;
}

bool renameRobot(const QString& name, const QString& newName)
{
    Store store;
    const QList<Entry> entries = entriesOf(store);
    const QString id = idOf(entries, name);
    const QString wanted = Store::nameOf(newName);
    if (id.isEmpty() || wanted.isEmpty() || hasName(entries, wanted))
        return false;
    store.setValue(id + "/name", wanted);
    return true;
}

void deleteRobot(const QString& name)
{
    Store store;
    const QString id = idOf(entriesOf(store), name);
    if (!id.isEmpty())
        store.remove(id);
}

void orderRobots(const QStringList& names)
{
    Store store;
    QList<Entry> entries = entriesOf(store);
    const auto placeOf = [&names](const Entry& entry) {
        const auto place = names.indexOf(entry.robot.name);
        return place < 0 ? names.size() : place;
    };
    std::stable_sort(
        entries.begin(), entries.end(),
        [&placeOf](const Entry& one, const Entry& two) { return placeOf(one) < placeOf(two); });
    writeOrder(store, entries);
}

QString savedNameOf(const ConnectionSettings& settings, const QString& chosen)
{
    const QList<SavedRobot> robots = savedRobots();
    const auto fitness = [&](const SavedRobot& robot) {
        if (!isSameRobot(robot.settings, settings))
            return 0;
        if (robot.name == chosen)
            return 3;
        return isReachedAlike(robot.settings, settings) ? 2 : 1;
    };
    const auto best = std::max_element(robots.begin(), robots.end(),
                                       [&fitness](const SavedRobot& one, const SavedRobot& other) {
                                           return fitness(one) < fitness(other);
                                       });
    return best == robots.end() || fitness(*best) == 0 ? QString() : best->name;
}

std::optional<SavedRobot> lastRobot()
{
    Store store;
    const auto entry = store.read(store.value(lastKey).toString());
    return entry ? std::optional<SavedRobot>(entry->robot) : std::nullopt;
}

void rememberLastRobot(const ConnectionSettings& settings)
{
    Store store;
    store.setValue(lastKey, idOf(entriesOf(store), savedNameOf(settings)));
}
