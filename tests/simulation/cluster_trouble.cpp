// SPDX-License-Identifier: MIT
#include "simulation/cluster_trouble.h"

const char* nameOf(ClusterTrouble trouble)
{
    static constexpr const char* names[] = {"the owner moves",
                                            "the owner dies",
                                            "a node dies",
                                            "the slot is moving",
                                            "nodes send each other around",
                                            "a node lies",
                                            "a node is cut off",
                                            "connections break",
                                            "network goes silent",
                                            "nodes hang"};
    return names[static_cast<int>(trouble)];
}
