// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QString>

/// What a window knows about its robot: of its links, the one that is worst off.
struct ConnectionState
{
    bool connected = false;
    bool lost = false;    ///< down, and its panels were told; else it is interrupted when down
    bool refused = false; ///< for good: nothing tries again before ConnectionMonitor::reconnect
    bool closed = false;  ///< the same, since the user wanted it
    QDateTime since;      ///< local time of the last change of `connected`
    QString cause;        ///< why it is down; empty while connected
    QString remark;       ///< what else may tell why; mostly empty
    int panels = 0;       ///< that are watched
    int concerned = 0;    ///< of these, those whose link is down
    int stopped = 0;      ///< of these, those that were told, and whose link is up again

    bool operator==(const ConnectionState& other) const;
    bool operator!=(const ConnectionState& other) const { return !(*this == other); }
};
