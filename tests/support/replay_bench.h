// SPDX-License-Identifier: MIT
#pragma once

#include "support/files.h"

#include <replay/replay.h>

#include <zo/zo.h>

#include <QTemporaryDir>
#include <QtTest>

#include <map>
#include <optional>

/// A recording that is played, in the test's own time.
class ReplayBench
{
public:
    /// As JSON, by their keys.
    using Values = std::map<std::string, std::string>;

    void begin(const QByteArray& text, double speed = 1, bool loops = false)
    {
        writeBytes(path(), text);
        now = Replay::Point(std::chrono::hours(1));
        replay.emplace(path().toStdString(), speed, loops);
    }
    QString path() const { return fFolder.filePath("a.csv"); }

    void obey(const std::string& text) { replay->obey(*kit::replayCommandFrom(text), now); }

    /// What is published within that time, without what tells of the replay.
    Values advance(std::chrono::milliseconds time)
    {
        now += time;
        replay->advance(now);
        Values values = takeChanged();
        for (const char* key : {kit::replayStateKey, kit::replayTimeKey, kit::replaySpeedKey})
            values.erase(key);
        return values;
    }
    /// What is published at its end.
    Values endSearch()
    {
        Values values;
        while (replay->isSearching())
            values = advance(std::chrono::milliseconds(5));
        return values;
    }
    Values takeChanged()
    {
        const ZoValue pairs = replay->takeChanged();
        Values values;
        for (int i = 0; i < pairs.getSize(); ++i)
            values[pairs[i][0].asString()] = ZoJson::textOf(pairs[i][1]);
        return values;
    }
    /// In milliseconds; -1: it stands.
    int untilDue() const
    {
        using Milliseconds = std::chrono::duration<int, std::milli>;
        const auto due = replay->due();
        return due ? std::chrono::duration_cast<Milliseconds>(*due - now).count() : -1;
    }

    Replay::Point now;
    std::optional<Replay> replay;

    // The same recording in both forms, and a long one:

    static inline const QByteArray fTable = "time,a,b\r\n"
                                            "100.000,1,\"\"\"x\"\"\"\r\n"
                                            "100.100,2,\"\"\"x\"\"\"\r\n"
                                            "100.250,2,\r\n"
                                            "101.000,3,true\r\n";
    static inline const QByteArray fChanges = "time,key,type,value\r\n"
                                              "100.000,a,int,1\r\n"
                                              "100.000,b,string,\"\"\"x\"\"\"\r\n"
                                              "100.100,a,int,2\r\n"
                                              "100.250,,gap,\r\n"
                                              "100.250,a,int,2\r\n"
                                              "101.000,c,bool,true\r\n";
    /// A row for each second, in which `a` counts them.
    static QByteArray longTable(int rows)
    {
        QByteArray text = "time,a\r\n";
        for (int i = 0; i < rows; ++i)
            text += QByteArray::number(i) + "," + QByteArray::number(i) + "\r\n";
        return text;
    }

private:
    QTemporaryDir fFolder;
};
