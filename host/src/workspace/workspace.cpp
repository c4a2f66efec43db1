// SPDX-License-Identifier: MIT
#include "workspace/workspace.h"

#include "connection/connection_store.h"
#include "windows/sealed_bytes.h"

#include <zo/error.h>

#include <QCoreApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QSettings>

#include <algorithm>
#include <utility>

namespace {

/// The context that translators find the texts in.
struct WorkspaceText
{
    Q_DECLARE_TR_FUNCTIONS(WorkspaceText)
};

constexpr char kind[] = "tarvek-workspace"; ///< what the file says that it is
constexpr int longestName = 1000;           ///< characters; of paths, addresses, titles
constexpr int longestLook = 1 << 16;        ///< bytes
constexpr int mostParts = 1000;             ///< of a panel that are arranged
constexpr int longestPart = 1 << 14;        ///< characters

[[noreturn]] void refuse(const QString& problem)
{
    throw ZoError(problem.toStdString());
}

/// Empty when it is not there.
QString textIn(const QJsonObject& object, const QString& key)
{
    const QJsonValue value = object.value(key);
    QString text = value.toString();
    if ((!value.isString() && !value.isUndefined()) || text.size() > longestName)
        refuse(WorkspaceText::tr("\"%1\" is no text, or too long").arg(key));
    return text;
}

/// One line, for people.
QString nameIn(const QJsonObject& object, const QString& key)
{
    return textIn(object, key).simplified();
}

/// As it was written: blanks may be part of a path.
QString wordIn(const QJsonObject& object, const QString& key)
{
    QString text = textIn(object, key);
    const auto isControl = [](QChar one) { return one.category() == QChar::Other_Control; };
    if (std::any_of(text.begin(), text.end(), isControl))
        refuse(WorkspaceText::tr("\"%1\" has characters that no text of one line has").arg(key));
    return text;
}

/// A few bytes of a window's look can hold up the toolkit for minutes: it gets only what this
/// user's program wrote. From elsewhere, windows and panels come in the places of new ones.
QByteArray ownKey()
{
    constexpr char name[] = "workspaces/secret";
    constexpr int size = 32;
    QSettings store;
    QByteArray key = store.value(name).toByteArray();
    if (key.size() != size) {
        key.resize(size);
        std::generate(key.begin(), key.end(),
                      [] { return static_cast<char>(QRandomGenerator::system()->generate()); });
        store.setValue(name, key);
    }
    return key;
}

QByteArray lookIn(const QJsonObject& object, const QString& key)
{
    const QByteArray bytes = object.value(key).toString().toLatin1();
    return bytes.size() > longestLook ? QByteArray()
                                      : unsealed(QByteArray::fromBase64(bytes), ownKey());
}

/// Empty when it is too large to be read again: its panels come in the places of new ones then.
QString lookText(const QByteArray& bytes)
{
    const QByteArray text = sealed(bytes, ownKey()).toBase64();
    return text.size() > longestLook ? QString() : QString::fromLatin1(text);
}

bool isFitPart(const QString& name, const QString& text)
{
    return name.size() <= longestPart && text.size() <= longestPart;
}

PanelArrangement arrangementIn(const QJsonObject& object)
{
    PanelArrangement arrangement;
    for (auto part = object.begin(); part != object.end(); ++part) {
        const QString text = part.value().toString();
        if (isFitPart(part.key(), text))
            arrangement[part.key()] = text;
        if (arrangement.size() == mostParts)
            break;
    }
    return arrangement;
}

QJsonObject jsonOf(const PanelArrangement& arrangement)
{
    QJsonObject object;
    for (auto part = arrangement.begin(); part != arrangement.end(); ++part) {
        if (isFitPart(part.key(), part.value()) && object.size() < mostParts)
            object[part.key()] = part.value();
    }
    return object;
}

ConnectionSettings robotIn(const QJsonObject& object, const QString& folder)
{
    QVariantMap values;
    for (const QString& key : connectionValues({}).keys()) {
        const QJsonValue value = object.value(key);
        values[key] = value.isBool() || value.isDouble() ? value.toVariant() : wordIn(object, key);
    }
    for (const QString& key : connectionFileKeys()) {
        const QString path = values[key].toString();
        values[key] = path.isEmpty() ? path : QDir(folder).absoluteFilePath(path);
    }
    return connectionFrom(values);
}

QJsonObject jsonOf(const ConnectionSettings& robot, const QString& folder)
{
    QVariantMap values = connectionValues(robot);
    for (const QString& key : connectionFileKeys()) {
        const QString path = values[key].toString();
        const QString relative = QDir(folder).relativeFilePath(path);
        if (!path.isEmpty() && !relative.startsWith(".."))
            values[key] = relative;
    }
    return QJsonObject::fromVariantMap(values);
}

PanelContent panelIn(const QJsonObject& object)
{
    PanelContent panel{nameIn(object, "plugin"), nameIn(object, "dock"),
                       arrangementIn(object.value("arrangement").toObject())};
    if (panel.plugin.isEmpty())
        refuse(WorkspaceText::tr("no plug-in is named"));
    return panel;
}

/// `text` at a place for the user.
QString problemAt(const QString& place, const std::exception& error)
{
    return WorkspaceText::tr("%1: %2").arg(place, QString::fromUtf8(error.what()));
}

void refuseTooManyPanels(const QJsonArray& panels)
{
    if (panels.size() > mostWorkspacePanels)
        refuse(WorkspaceText::tr("more than %1 panels").arg(mostWorkspacePanels));
}

void readPanels(const QJsonArray& array, const QString& place, Workspace& workspace,
                WindowContent& content)
{
    refuseTooManyPanels(array);
    for (int i = 0; i < array.size(); ++i) {
        try {
            const QJsonObject object = array.at(i).toObject();
            const PanelContent panel = panelIn(object);
            const QString title = nameIn(object, "title");
            if (!title.isEmpty())
                content.look.titles[panel.dock] = title;
            content.panels += panel;
        } catch (const ZoError& error) {
            workspace.problems +=
                problemAt(WorkspaceText::tr("%1, panel %2").arg(place).arg(i + 1), error);
        }
    }
}

void readWindow(const QJsonObject& object, const QString& place, const QString& folder,
                Workspace& workspace)
{
    WorkspaceWindow window;
    try {
        window.robot = robotIn(object.value("robot").toObject(), folder);
        window.content.look.geometry = lookIn(object, "geometry");
        window.content.look.docks = lookIn(object, "docks");
        readPanels(object.value("panels").toArray(), place, workspace, window.content);
        workspace.windows += window;
    } catch (const ZoError& error) {
        workspace.problems += problemAt(place, error);
    }
}

QJsonObject jsonOf(const PanelContent& panel, const QString& title)
{
    return {{"plugin", panel.plugin},
            {"dock", panel.dock},
            {"title", title.size() > longestName ? QString() : title},
            {"arrangement", jsonOf(panel.arrangement)}};
}

QJsonObject jsonOf(const WorkspaceWindow& window, const QString& folder)
{
    QJsonArray panels;
    for (const PanelContent& panel : window.content.panels)
        panels += jsonOf(panel, window.content.look.titles.value(panel.dock));
    return {{"robot", jsonOf(window.robot, folder)},
            {"geometry", lookText(window.content.look.geometry)},
            {"docks", lookText(window.content.look.docks)},
            {"panels", panels}};
}

/// The members of `now`, and those of `before` that this version does not write.
QJsonObject over(const QJsonObject& before, QJsonObject now)
{
    for (auto member = before.begin(); member != before.end(); ++member)
        if (!now.contains(member.key()))
            now.insert(member.key(), member.value());
    return now;
}

/// Takes the first object out of `array` of which `key` says the same as of `like`; an empty one
/// when there is none.
template <class Key>
QJsonObject taken(QJsonArray& array, const QJsonObject& like, Key key)
{
    const auto found = std::find_if(array.begin(), array.end(), [&](const QJsonValue& value) {
        return key(value.toObject()) == key(like);
    });
    return found == array.end() ? QJsonObject() : array.takeAt(found - array.begin()).toObject();
}

QStringList robotKey(const QJsonObject& window)
{
    const QJsonObject robot = window["robot"].toObject();
    return {robot["address"].toString(), robot["prefix"].toString(), robot["user"].toString(),
            robot["jumpHost"].toString(), robot["sentinel"].toString()};
}

bool isReadable(const QJsonObject& window, const QString& folder)
{
    Workspace workspace;
    readWindow(window, {}, folder, workspace);
    return !workspace.windows.isEmpty();
}

bool isReadable(const QJsonObject& panel)
{
    try {
        panelIn(panel);
        return true;
    } catch (const ZoError&) {
        return false;
    }
}

QJsonObject windowOver(const QJsonObject& before, const QJsonObject& now)
{
    QJsonObject window = over(before, now);
    window["robot"] = over(before["robot"].toObject(), now["robot"].toObject());
    QJsonArray panelsBefore = before["panels"].toArray();
    QJsonArray panels;
    for (const auto& panel : now["panels"].toArray()) {
        const QJsonObject same = taken(panelsBefore, panel.toObject(), [](const QJsonObject& one) {
            return one["dock"].toString();
        });
        panels += over(same, panel.toObject());
    }
    for (const auto& panel : panelsBefore)
        if (!isReadable(panel.toObject()))
            panels += panel;
    refuseTooManyPanels(panels);
    window["panels"] = panels;
    return window;
}

/// What could not be opened is not written.
void refuseUnreadable(const QJsonObject& window, const QString& folder,
                      const WorkspaceWindow& wanted)
{
    Workspace read;
    const QString place = WorkspaceText::tr("the window of %1").arg(wanted.robot.addressText());
    readWindow(window, place, folder, read);
    if (!read.problems.isEmpty())
        refuse(read.problems.first());
}

void refuseTooMany(const QJsonArray& windows)
{
    if (windows.size() > mostWorkspaceWindows)
        refuse(WorkspaceText::tr("it has more than %1 windows").arg(mostWorkspaceWindows));
}

QJsonObject objectIn(const QByteArray& text, QString& problem)
{
    QJsonParseError error;
    QJsonObject object = QJsonDocument::fromJson(text, &error).object();
    if (error.error != QJsonParseError::NoError)
        problem = WorkspaceText::tr("it is no JSON: %1, at byte %2")
                      .arg(error.errorString())
                      .arg(error.offset);
    else if (object.value("format").toString() != kind || !object.value("windows").isArray())
        problem = WorkspaceText::tr("it is no workspace of this program");
    return object;
}

} // namespace

Workspace workspaceFrom(const QByteArray& text, const QString& folder)
{
    QString problem;
    const QJsonArray windows = objectIn(text, problem).value("windows").toArray();
    if (!problem.isEmpty())
        refuse(problem);
    refuseTooMany(windows);
    Workspace workspace;
    for (int i = 0; i < windows.size(); ++i)
        readWindow(windows.at(i).toObject(), WorkspaceText::tr("Window %1").arg(i + 1), folder,
                   workspace);
    return workspace;
}

Workspace fitting(const Workspace& workspace, const QString& folder)
{
    Workspace fit;
    for (WorkspaceWindow window : workspace.windows) {
        QList<PanelContent> panels;
        for (const PanelContent& panel : std::as_const(window.content.panels)) {
            if (panels.size() < mostWorkspacePanels && isReadable(jsonOf(panel, {})))
                panels += panel;
        }
        window.content.panels = panels;
        if (fit.windows.size() < mostWorkspaceWindows && isReadable(jsonOf(window, folder), folder))
            fit.windows += window;
        // Without the arrangements of its panels a window is small.
        if (workspaceText(fit, folder).size() > largestWorkspace)
            for (PanelContent& panel : fit.windows.last().content.panels)
                panel.arrangement.clear();
    }
    while (!fit.windows.isEmpty() && workspaceText(fit, folder).size() > largestWorkspace)
        fit.windows.removeLast();
    return fit;
}

QByteArray workspaceText(const Workspace& workspace, const QString& folder,
                         const QByteArray& before)
{
    QString problem;
    QJsonObject old = objectIn(before, problem);
    const int version = std::max(old["version"].toInt(), workspaceVersion);
    if (!problem.isEmpty()) {
        if (old["format"].toString() == kind && version > workspaceVersion)
            refuse(WorkspaceText::tr("a newer version wrote it, and this one does not understand "
                                     "it: choose another file"));
        old = {};
    }
    QJsonArray oldWindows = old["windows"].toArray();
    QJsonArray windows;
    for (const WorkspaceWindow& window : workspace.windows) {
        const QJsonObject now = jsonOf(window, folder);
        refuseUnreadable(now, folder, window);
        windows += windowOver(taken(oldWindows, now, robotKey), now);
    }
    for (const auto& window : oldWindows)
        if (!isReadable(window.toObject(), folder))
            windows += window;
    refuseTooMany(windows);
    const QJsonObject all =
        over(old, {{"format", kind}, {"version", version}, {"windows", windows}});
    return QJsonDocument(all).toJson();
}
