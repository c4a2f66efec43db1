// SPDX-License-Identifier: MIT
#pragma once

/// What happens to a cluster, or to the way there.
enum class ClusterTrouble
{
    OwnerMoves,
    OwnerDies,
    NodeDies,
    SlotIsMoving,
    NodesSendAround,
    NodeLies,
    NodeIsCutOff,
    ConnectionsBreak,
    NetworkGoesSilent,
    NodesHang
};
constexpr int clusterTroubles = 10;
const char* nameOf(ClusterTrouble trouble);
