// SPDX-License-Identifier: MIT
#pragma once

namespace zo {

/// How many keys one command is about: more would hold up the robot's other clients.
constexpr int keysPerCommand = 1000;

} // namespace zo
