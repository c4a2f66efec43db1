// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace kit {
class Output;
}
class ZoMemoryProxy;

/// Does what `text` says with a robot that plays a recording: "status" prints what it is doing,
/// where and how fast; of a command it returns when the robot has taken it, and waits before for
/// one that somebody else has given. Throws ZoError when the robot fails, plays nothing, or does
/// not obey, and what Output throws.
void controlReplay(ZoMemoryProxy& memory, const std::string& text, kit::Output& output);
