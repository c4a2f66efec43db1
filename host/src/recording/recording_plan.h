// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

struct ConnectionSettings;

/// What the user wants to have recorded, and how.
struct RecordingPlan
{
    enum class What
    {
        Configuration, ///< the keys that a panel's configuration file watches
        Keys,
        All
    };

    What what = What::Configuration;
    QString configuration; ///< path
    QStringList keys;
    int period = 1000; ///< ms
    QString output;    ///< path
    QString rotation;  ///< size or age of a file, as the recorder takes them; empty: one file
    bool changes = false;
    bool keyNames = false; ///< columns are called by their keys
    bool gapRows = true;
};

/// The recorder's words for it. The password is not among them: the recorder reads it from its
/// standard input, if there is one.
QStringList recorderWords(const ConnectionSettings& robot, const RecordingPlan& plan);

/// The program that records: the one beside this program, or else that of PATH. Empty: none.
QString recorderProgram();

/// What to do when there is none.
QString recorderMissing();

/// The user's last one, without the file; of the settings, which anybody may have edited.
RecordingPlan lastPlan();
void rememberPlan(const RecordingPlan& plan);
