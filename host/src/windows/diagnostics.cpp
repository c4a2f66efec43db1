// SPDX-License-Identifier: MIT
#include "windows/diagnostics.h"

#include "plugins/plugin_loader.h"

#include <QApplication>
#include <QDateTime>
#include <QRegularExpression>
#include <QScreen>
#include <QSettings>
#include <QStyle>

namespace {

constexpr int longestValue = 200; ///< characters

QString yesOrNo(bool value)
{
    return value ? "yes" : "no";
}

QStringList programLines()
{
    return {QString("%1 %2, Qt %3 (built with %4)")
                .arg(QApplication::applicationName(), QApplication::applicationVersion(),
                     qVersion(), QT_VERSION_STR),
            QString("system: %1, kernel %2, %3")
                .arg(QSysInfo::prettyProductName(), QSysInfo::kernelVersion(),
                     QSysInfo::currentCpuArchitecture()),
            QString("display: %1, desktop %2, style %3, locale %4")
                .arg(QApplication::platformName(),
                     QString::fromLocal8Bit(qgetenv("XDG_CURRENT_DESKTOP")),
                     QApplication::style()->objectName(), QLocale().name()),
            "time: " + QDateTime::currentDateTime().toString(Qt::ISODate)};
}

QStringList screenLines()
{
    QStringList lines;
    for (const QScreen* screen : QApplication::screens())
        lines += QString("screen: %1 x %2, scale %3")
                     .arg(QString::number(screen->size().width()),
                          QString::number(screen->size().height()),
                          QString::number(screen->devicePixelRatio()));
    return lines;
}

QStringList robotLines(const ConnectionSettings& robot)
{
    return {"robot: " + robot.robotText(),
            QString("user given: %1, password given: %2, TLS: %3, authorities: %4")
                .arg(yesOrNo(!robot.user.isEmpty()), yesOrNo(!robot.password.empty()),
                     yesOrNo(robot.tls), robot.caFile.isEmpty() ? "the system's" : robot.caFile)};
}

/// `lines` with the same word before each.
QStringList named(const QString& name, const QStringList& lines)
{
    QStringList result;
    for (const QString& line : lines)
        result += name + ": " + line;
    return result;
}

QStringList pluginLines(const PluginLoader& plugins)
{
    QStringList lines;
    for (const auto& plugin : plugins.plugins())
        lines += QString("plug-in: %1, %2").arg(plugin->name, plugin->file);
    for (const PluginFailure& failure : plugins.failures())
        lines += QString("failed: %1: %2").arg(failure.file, failure.reason);
    return lines;
}

/// Passwords are in no settings of this program's; somebody may have written one there all the
/// same.
QString valueText(const QString& key, const QVariant& value)
{
    static const QRegularExpression secret("pass|secret|token|credential",
                                           QRegularExpression::CaseInsensitiveOption);
    if (secret.match(key).hasMatch())
        return "(left out)";
    if (value.userType() == QMetaType::QByteArray)
        return QString("(%1 bytes)").arg(value.toByteArray().size());
    return value.toStringList().join(", ").left(longestValue);
}

QStringList settingLines()
{
    const QSettings store;
    QStringList lines;
    for (const QString& key : store.allKeys())
        lines += QString("setting: %1 = %2").arg(key, valueText(key, store.value(key)));
    return lines;
}

} // namespace

QString diagnostics(const PluginLoader& plugins, const ConnectionSettings& robot,
                    const QStringList& connection, const QStringList& panels)
{
    QStringList lines = programLines() + screenLines() + robotLines(robot) +
                        named("connection", connection) + named("panel", panels) +
                        pluginLines(plugins) + settingLines();
    for (QString& line : lines)
        line = line.simplified();
    return lines.join('\n') + '\n';
}
