// SPDX-License-Identifier: MIT
#include "connection/loss_limit.h"

#include <QSettings>
#include <QVariant>

namespace {

constexpr char limitName[] = "lostAfter"; ///< in s

} // namespace

std::chrono::seconds storedLossLimit()
{
    bool isNumber = false;
    const qint64 seconds = QSettings().value(limitName).toLongLong(&isNumber);
    const bool isSensible = isNumber && seconds >= 0 && seconds <= longestLossLimit.count();
    return isSensible ? std::chrono::seconds(seconds) : defaultLossLimit;
}

void storeLossLimit(std::chrono::seconds limit)
{
    QSettings().setValue(limitName, static_cast<qlonglong>(limit.count()));
}
