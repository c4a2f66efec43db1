// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_state.h"

/// States of a window with one panel.

const QDateTime noon(QDate(2026, 11, 20), QTime(12, 0, 0));

inline ConnectionState connectedState()
{
    ConnectionState state;
    state.connected = true;
    state.since = noon;
    state.panels = 1;
    return state;
}

inline ConnectionState interruptedState(const QString& cause = "robot:1 fell over")
{
    ConnectionState state = connectedState();
    state.connected = false;
    state.cause = cause;
    state.concerned = 1;
    return state;
}

inline ConnectionState lostState(const QString& cause = "robot:1 fell over")
{
    ConnectionState state = interruptedState(cause);
    state.lost = true;
    return state;
}

inline ConnectionState refusedState(const QString& cause = "robot:1 fell over")
{
    ConnectionState state = lostState(cause);
    state.refused = true;
    return state;
}

inline ConnectionState closedState()
{
    ConnectionState state = lostState();
    state.closed = true;
    return state;
}
