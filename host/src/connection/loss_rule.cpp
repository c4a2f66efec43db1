// SPDX-License-Identifier: MIT
#include "connection/loss_rule.h"

bool LossRule::see(Time now, const ZoLinkStatus& link)
{
    if (link.connected) {
        *this = LossRule(fLimit);
        return false;
    }
    if (!fDownSince || link.since != fOutage) {
        *this = LossRule(fLimit);
        fDownSince = now;
        fOutage = link.since;
    }
    fDownFor = now - *fDownSince;
    const bool wasLost = fIsLost;
    const bool hasWaited = fDownFor >= fLimit && !link.opening;
    fIsLost = wasLost || link.refused || link.closed || hasWaited;
    return fIsLost && !wasLost;
}

LossRule::State LossRule::state() const
{
    if (fIsLost)
        return State::Lost;
    return fDownSince ? State::Interrupted : State::Connected;
}
