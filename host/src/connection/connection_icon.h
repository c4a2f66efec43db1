// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_state.h"

#include <QStyle>

/// The sign of a connection: fine, to be waited for, or in need of the user.
inline QStyle::StandardPixmap connectionIcon(const ConnectionState& state)
{
    if (state.connected)
        return QStyle::SP_DialogApplyButton;
    return state.refused ? QStyle::SP_MessageBoxCritical : QStyle::SP_MessageBoxWarning;
}
