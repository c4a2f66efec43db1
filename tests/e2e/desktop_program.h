// SPDX-License-Identifier: MIT
#pragma once

#include "support/patience.h"
#include "support/program.h"
#include "support/redis_server.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>

/// The desktop as users start it, but without a display and with settings of its own.
class DesktopProgram : public Program
{
public:
    DesktopProgram(const QString& file, const QStringList& words,
                   const QString& platform = "offscreen")
        : Program(file, words)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", platform);
        environment.insert("XDG_CONFIG_HOME", fHome.path());
        environment.insert("XDG_RUNTIME_DIR", fHome.path());
        environment.remove("DISPLAY");
        forgiveThePlatform(environment);
        setProcessEnvironment(environment);
    }

    /// It may be writing into the folder that goes with this.
    ~DesktopProgram() override
    {
        kill();
        waitForFinished(patience);
    }

    /// Standard error so far, without what the offscreen platform says of itself.
    QString warnings()
    {
        QStringList lines = errors().split('\n', Qt::SkipEmptyParts);
        const auto isChatter = [](const QString& line) {
            return line.startsWith("This plugin does not support ");
        };
        lines.erase(std::remove_if(lines.begin(), lines.end(), isChatter), lines.end());
        return lines.join('\n');
    }

    /// Waits until it shows a dialog with that panel loaded: the panel's own, which asks at the
    /// start. Of each dialog the platform complains.
    bool waitForDialogOf(const QByteArray& panel)
    {
        return waitUntil([&] { return errors().contains("This plugin") && hasLoaded(panel); });
    }

    /// The file of its user's settings.
    QByteArray settings() const
    {
        QFile file(fHome.filePath("Tarvek/Tarvek Desktop.conf"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    static QStringList wordsFor(const RedisServer& robot)
    {
        return {"--connect", QString("127.0.0.1:%1").arg(robot.port())};
    }

private:
    bool hasLoaded(const QByteArray& library) const
    {
        QFile maps(QString("/proc/%1/maps").arg(processId()));
        return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(library);
    }

    /// For leak checks of the program: the offscreen platform never frees the screen it makes.
    void forgiveThePlatform(QProcessEnvironment& environment) const
    {
        QFile list(fHome.filePath("leaks"));
        if (list.open(QIODevice::WriteOnly) && list.write("leak:libqoffscreen.so\n") > 0)
            environment.insert("LSAN_OPTIONS",
                               "print_suppressions=0:suppressions=" + list.fileName());
    }

    QTemporaryDir fHome;
};
