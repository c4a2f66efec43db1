// SPDX-License-Identifier: MIT
#include "connection/connection_state.h"

#include <tuple>

namespace {

auto parts(const ConnectionState& state)
{
    return std::tie(state.connected, state.lost, state.refused, state.closed, state.since,
                    state.cause, state.remark, state.panels, state.concerned, state.stopped);
}

} // namespace

bool ConnectionState::operator==(const ConnectionState& other) const
{
    return parts(*this) == parts(other);
}
