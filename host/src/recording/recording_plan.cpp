// SPDX-License-Identifier: MIT
#include "recording/recording_plan.h"

#include "connection/connection_settings.h"
#include "connection/ssh_relay.h"

#include <QCoreApplication>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>

namespace {

constexpr char groupName[] = "recording";

/// An option whose value is not empty.
QStringList given(const QString& option, const QString& value)
{
    return value.isEmpty() ? QStringList() : QStringList{option, value};
}

QStringList flag(const QString& option, bool isWanted)
{
    return isWanted ? QStringList(option) : QStringList();
}

QStringList connectionWords(const ConnectionSettings& robot)
{
    QStringList words{"--connect", robot.addressesText()};
    if (robot.relay)
        words += QStringList{"--socket", QFile::decodeName(robot.relay->path().c_str())};
    words += given("--sentinel", QString::fromStdString(robot.other.sentinel));
    words += flag("--replica", robot.other.replica);
    words += given("--prefix", robot.prefix);
    words += given("--user", robot.user);
    words += given("--password-file", robot.password.empty() ? QString() : "/dev/stdin");
    words += flag("--tls", robot.tls);
    if (robot.tls)
        words += given("--ca", robot.caFile) + given("--cert", robot.certFile) +
                 given("--key", robot.keyFile);
    return words + given("--timeout", robot.timeout > 0 ? QString::number(robot.timeout) : "");
}

/// Behind all options: a key may look like one.
QStringList subjectWords(const RecordingPlan& plan)
{
    switch (plan.what) {
    case RecordingPlan::What::Configuration:
        return {"--config", plan.configuration};
    case RecordingPlan::What::Keys:
        return QStringList("--") + plan.keys;
    case RecordingPlan::What::All:
        break;
    }
    return {"--all"};
}

RecordingPlan::What whatFrom(const QString& name)
{
    if (name == "keys")
        return RecordingPlan::What::Keys;
    return name == "all" ? RecordingPlan::What::All : RecordingPlan::What::Configuration;
}

QString nameOf(RecordingPlan::What what)
{
    switch (what) {
    case RecordingPlan::What::Keys:
        return "keys";
    case RecordingPlan::What::All:
        return "all";
    case RecordingPlan::What::Configuration:
        break;
    }
    return "configuration";
}

} // namespace

QStringList recorderWords(const ConnectionSettings& robot, const RecordingPlan& plan)
{
    QStringList words = connectionWords(robot);
    words += QStringList{"--status", "--output", plan.output};
    words += QStringList{"--period", QString::number(plan.period)};
    words += given("--rotate", plan.rotation);
    words += flag("--changes", plan.changes);
    words += flag("--key-names", plan.keyNames);
    words += flag("--gap-rows", plan.gapRows);
    return words + subjectWords(plan);
}

QString recorderProgram()
{
    const QString name = "zo-record";
    const QString beside =
        QStandardPaths::findExecutable(name, {QCoreApplication::applicationDirPath()});
    return beside.isEmpty() ? QStandardPaths::findExecutable(name) : beside;
}

QString recorderMissing()
{
    return QCoreApplication::translate(
        "RecordingPlan",
        "The program zo-record, which records, is missing. Install the package zo-record, or put "
        "the program beside tarvek-desktop, or into a folder of PATH.");
}

RecordingPlan lastPlan()
{
    QSettings store;
    store.beginGroup(groupName);
    RecordingPlan plan;
    plan.what = whatFrom(store.value("what").toString());
    plan.configuration = store.value("configuration").toString();
    plan.keys = store.value("keys").toStringList();
    plan.period = store.value("period", plan.period).toInt();
    plan.rotation = store.value("rotation").toString();
    plan.changes = store.value("changes").toBool();
    plan.keyNames = store.value("keyNames").toBool();
    plan.gapRows = store.value("gapRows", plan.gapRows).toBool();
    return plan;
}

void rememberPlan(const RecordingPlan& plan)
{
    QSettings store;
    store.beginGroup(groupName);
    store.setValue("what", nameOf(plan.what));
    store.setValue("configuration", plan.configuration);
    store.setValue("keys", plan.keys);
    store.setValue("period", plan.period);
    store.setValue("rotation", plan.rotation);
    store.setValue("changes", plan.changes);
    store.setValue("keyNames", plan.keyNames);
    store.setValue("gapRows", plan.gapRows);
}
